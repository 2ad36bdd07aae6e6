#include "Core/CUIEventBridge.h"

#include "Core/CPtr.h"
#include "Core/CStdEventBridge.h"
#include "Core/CSystem.h"
#include "Core/CWorkerThreadPool.h"
#include "Platform/CCriticalSection.h"

namespace tsm {
namespace {

constexpr int kEventMessage = 5120;

/// What is on its way, for all bridges of the process.
struct CPendingEvents {
    CCriticalSection lock{4000};
    std::int64_t lastNumber = 0;
    CMap<const CUIEventBridge*, CMap<std::int64_t, CAttrMap>> bridges;
};

CPendingEvents& pendingEvents()
{
    static CPendingEvents events;
    return events;
}

} // namespace

CUIEventBridge::CUIEventBridge(CStdEventBridge& target) : receiver(target)
{
    CPendingEvents& pending = pendingEvents();
    const CLockScope scope(pending.lock);
    pending.bridges[this];
}

CUIEventBridge::~CUIEventBridge()
{
    CPendingEvents& pending = pendingEvents();
    {
        const CLockScope scope(pending.lock);
        pending.bridges.remove(this);
    }
    // The window that needed them may have been the last one.
    CWorkerThreadPool::clearIdleThreads();
}

CError* CUIEventBridge::post(const CAttrMap& params)
{
    CPendingEvents& pending = pendingEvents();
    // Under the lock up to the posting, so that the numbers arrive in the order of the calls.
    const CLockScope scope(pending.lock);
    const std::int64_t number = ++pending.lastNumber;
    pending.bridges[this][number] = params;
    if (CError* error = CSystem::sendEvent(*this, kEventMessage, number)) {
        pending.bridges[this].remove(number);
        TSM_TRY(error);
    }
    return nullptr;
}

void CUIEventBridge::onMessage(int message, std::int64_t parameter)
{
    if (message != kEventMessage)
        return;
    CAttrMap params;
    {
        CPendingEvents& pending = pendingEvents();
        const CLockScope scope(pending.lock);
        auto* events = pending.bridges.find(this);
        CAttrMap* waiting = events ? events->find(parameter) : nullptr;
        if (!waiting)
            return;
        params = std::move(*waiting);
        events->remove(parameter);
    }
    // Outside of the lock, since the event may post others. Nobody is left to return an error to.
    handleError(receiver.onBridgedEvent(params));
}

} // namespace tsm
