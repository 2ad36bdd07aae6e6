#include "Other/CParamInterfaceBaseConnectorUni.h"

#include <utility>

namespace tsm {

bool CParamInterfaceBaseConnectorUni::CQueue::hasRoomFor(
    const CInterfaceBlock& block) const noexcept
{
    if (isRestoring || blocks.isEmpty())
        return true;
    return !isOverrun && blocks.getCount() < kMaxBlocks &&
           blocks.getByteCount() + block.bytes.getSize() <= kMaxBytes;
}

CParamInterfaceBaseConnectorUni::~CParamInterfaceBaseConnectorUni()
{
    for (const auto& queue : queues)
        delete queue.value;
}

void CParamInterfaceBaseConnectorUni::onClientAdded(std::uint32_t clientId)
{
    const CLockScope hold(queueLock);
    queues[clientId] = new CQueue;
}

void CParamInterfaceBaseConnectorUni::onClientRemoved(std::uint32_t clientId)
{
    CPtr<CQueue> removed;
    const CLockScope hold(queueLock);
    removed.reset(queues.get(clientId, nullptr));
    queues.remove(clientId);
}

// Takes the block if there is room; else its caller keeps it, and frees it behind the lock.
void CParamInterfaceBaseConnectorUni::enter(CQueue& queue, CPtr<CInterfaceBlock>& block)
{
    if (queue.hasRoomFor(*block))
        queue.blocks.add(std::move(block));
    else
        queue.isOverrun = true;
}

void CParamInterfaceBaseConnectorUni::send(std::uint32_t clientId, CPtr<CInterfaceBlock> block)
{
    if (!block || block->bytes.isEmpty())
        return;
    const CLockScope hold(queueLock);
    if (clientId != kAllClients) {
        if (CQueue* const queue = queues.get(clientId, nullptr))
            enter(*queue, block);
        return;
    }
    for (auto* queue = queues.first(); queue; queue = queues.next(queue)) {
        if (queue == queues.last()) {
            enter(*queue->value, block);
            return;
        }
        CPtr<CInterfaceBlock> copy(new CInterfaceBlock);
        copy->bytes = block->bytes;
        enter(*queue->value, copy);
    }
}

// Tells whether something was dropped before.
bool CParamInterfaceBaseConnectorUni::takeQueue(std::uint32_t clientId, CInterfaceBlockList& blocks)
{
    const CLockScope hold(queueLock);
    CQueue* const queue = queues.get(clientId, nullptr);
    if (!queue)
        return false;
    blocks.takeAll(queue->blocks);
    queue->isRestoring = std::exchange(queue->isOverrun, false);
    return queue->isRestoring;
}

void CParamInterfaceBaseConnectorUni::takeBlocks(std::uint32_t clientId,
                                                 CInterfaceBlockList& blocks)
{
    deliverUpdates();
    if (!takeQueue(clientId, blocks))
        return;
    restoreClient(clientId);
    [[maybe_unused]] const bool isOverrun = takeQueue(clientId, blocks);
}

int CParamInterfaceBaseConnectorUni::getBlockCount(std::uint32_t clientId)
{
    const CLockScope hold(queueLock);
    const CQueue* const queue = queues.get(clientId, nullptr);
    return queue ? queue->blocks.getCount() : 0;
}

} // namespace tsm
