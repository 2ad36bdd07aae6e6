#pragma once

#include "Other/CParamInterfaceBaseConnector.h"

namespace tsm {

/// The connector for clients in the same process: a queue for each, which the client empties at its
/// own pace. Tag `other:param-interface-base-connector-uni`.
///
/// The queue of a client that doesn't come stays bounded. What doesn't fit any more is dropped, and
/// all until the client has emptied it; then the base tells it anew how all is that it listens to.
/// Answers to requests that were dropped stay out.
class CParamInterfaceBaseConnectorUni : public CParamInterfaceBaseConnector {
public:
    /// Room for seconds of automation on all of the product's host parameters.
    static constexpr int kMaxBlocks = 4096;
    /// A block that is larger still goes into an empty queue.
    static constexpr std::int64_t kMaxBytes = 4 << 20;

    ~CParamInterfaceBaseConnectorUni() override;
    static void declareClass(CObjectClassInfo& info)
    {
        CParamInterfaceBaseConnector::declareClass(info);
    }

    void send(std::uint32_t clientId, CPtr<CInterfaceBlock> block) override;
    void takeBlocks(std::uint32_t clientId, CInterfaceBlockList& blocks) override;
    /// The blocks that wait for a client. [any]
    [[nodiscard]] int getBlockCount(std::uint32_t clientId);

protected:
    void onClientAdded(std::uint32_t clientId) override;
    void onClientRemoved(std::uint32_t clientId) override;

private:
    struct CQueue : CTsmMemAllocator {
        [[nodiscard]] bool hasRoomFor(const CInterfaceBlock& block) const noexcept;

        CInterfaceBlockList blocks;
        bool isOverrun = false;   // something was dropped
        bool isRestoring = false; // what comes now has to get through
    };

    static void enter(CQueue& queue, CPtr<CInterfaceBlock>& block);
    [[nodiscard]] bool takeQueue(std::uint32_t clientId, CInterfaceBlockList& blocks);

    // The innermost of all locks.
    CCriticalSection queueLock{50};
    CMap<std::uint32_t, CQueue*> queues;
};

} // namespace tsm
