#include "Audio/CParamUpdateQueue.h"

#include "Platform/CThreadId.h"

#include <cassert>

namespace tsm {

namespace {

template <class T>
void append(T*& first, T*& last, T* node) noexcept
{
    (last ? last->next : first) = node;
    last = node;
}

template <class T>
T* removeFirst(T*& first, T*& last) noexcept
{
    T* const node = first;
    first = node->next;
    if (!first)
        last = nullptr;
    return node;
}

template <class T>
void deleteAll(T*& first) noexcept
{
    while (T* const node = first) {
        first = node->next;
        delete node;
    }
}

} // namespace

CParamUpdateQueue::~CParamUpdateQueue()
{
    deleteAll(firstChange);
    deleteAll(firstUpdate);
}

int CParamUpdateQueue::findHolds(std::uint32_t threadId) const noexcept
{
    for (int i = 0; i < holds.getCount(); ++i)
        if (holds[i].threadId == threadId)
            return i;
    return -1;
}

void CParamUpdateQueue::raiseHold()
{
    const std::uint32_t self = currentThreadId();
    const CLockScope guard(lock);
    const int own = findHolds(self);
    if (own >= 0)
        ++holds[own].count;
    else
        holds.add({self, 1});
}

void CParamUpdateQueue::releaseHold()
{
    {
        const std::uint32_t self = currentThreadId();
        const CLockScope guard(lock);
        const int own = findHolds(self);
        assert(own >= 0 && "a hold is released by the thread that raised it");
        if (--holds[own].count > 0)
            return;
        holds.remove(own);
    }
    deliver();
    deliverToHost();
}

void CParamUpdateQueue::add(CPtr<CPendingParamChange> change)
{
    const CLockScope guard(lock);
    append(firstChange, lastChange, change.release());
}

void CParamUpdateQueue::addForHost(CPtr<CPendingHostUpdate> update)
{
    update->threadId = currentThreadId();
    {
        const CLockScope guard(lock);
        append(firstUpdate, lastUpdate, update.release());
    }
    deliverToHost();
}

void CParamUpdateQueue::dropForHost(const CAudioExtParamHostBridge& bridge,
                                    std::int32_t index) noexcept
{
    const CLockScope guard(lock);
    CPendingHostUpdate* before = nullptr;
    for (CPendingHostUpdate* update = firstUpdate; update;) {
        CPendingHostUpdate* const next = update->next;
        if (update->isFor(bridge, index)) {
            unlink(update, before);
            delete update;
        } else {
            before = update;
        }
        update = next;
    }
}

// `before` is the one in front of it, or null. The lock is held.
void CParamUpdateQueue::unlink(CPendingHostUpdate* update, CPendingHostUpdate* before) noexcept
{
    (before ? before->next : firstUpdate) = update->next;
    if (lastUpdate == update)
        lastUpdate = before;
}

// An outer call goes on with what listeners cause, and nobody waits for another thread's listeners.
void CParamUpdateQueue::deliver()
{
    {
        const CLockScope guard(lock);
        if (isDelivering || !firstChange || currentThreadId() == realtimeThread)
            return;
        isDelivering = true;
    }
    while (const CPtr<CPendingParamChange> change{takeChange()})
        change->deliver();
}

// The next change; null, and the end of the delivery, when there is none or it has to wait.
CPendingParamChange* CParamUpdateQueue::takeChange()
{
    const CLockScope guard(lock);
    bool mustWait = !firstChange;
    for (const CThreadHolds& hold : holds)
        mustWait |= hold.threadId != realtimeThread;
    if (mustWait) {
        isDelivering = false;
        return nullptr;
    }
    return removeFirst(firstChange, lastChange);
}

void CParamUpdateQueue::deliverToHost()
{
    while (const CPtr<CPendingHostUpdate> update{takeHostUpdate()})
        update->deliver();
}

// The calling thread's first update, or null while it has a hold.
CPendingHostUpdate* CParamUpdateQueue::takeHostUpdate()
{
    const std::uint32_t self = currentThreadId();
    const CLockScope guard(lock);
    if (!firstUpdate || findHolds(self) >= 0)
        return nullptr;
    CPendingHostUpdate* before = nullptr;
    CPendingHostUpdate* update = firstUpdate;
    for (; update && update->threadId != self; update = update->next)
        before = update;
    if (!update)
        return nullptr;
    unlink(update, before);
    return update;
}

} // namespace tsm
