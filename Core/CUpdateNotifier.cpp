#include "Core/CUpdateNotifier.h"

#include "Platform/CThreadId.h"

#include <array>
#include <cassert>

namespace tsm {

namespace {

/// A call of a listener that is running; it lies on the stack of its broadcast.
struct CUpdateCall {
    const CUpdateListener* listener;
    std::uint32_t thread;
    CUpdateCall* next;
};

} // namespace

/// The links of the notifiers whose addresses fall into one bucket.
struct CUpdateBucket {
    CCriticalSection lock{50};
    CSet<CUpdateNotifier*> alive;
    CUpdateCall* calls = nullptr;
    std::atomic<std::uint32_t> finishedCalls = 0; // wakes those who wait for a call's end

    void beginCall(CUpdateCall& call)
    {
        call.next = calls;
        calls = &call;
    }
    void endCall(const CUpdateCall& call)
    {
        CLockScope hold(lock);
        CUpdateCall** link = &calls;
        while (*link != &call)
            link = &(*link)->next;
        *link = call.next;
        ++finishedCalls;
        finishedCalls.notify_all();
    }
    [[nodiscard]] bool isCalledElsewhere(const CUpdateListener* listener) const
    {
        for (const CUpdateCall* call = calls; call; call = call->next)
            if (call->listener == listener && call->thread != currentThreadId())
                return true;
        return false;
    }
    // The lock is held once, and again on return.
    void waitForCallsOf(const CUpdateListener* listener)
    {
        while (isCalledElsewhere(listener)) {
            const std::uint32_t seen = finishedCalls.load();
            lock.leave();
            finishedCalls.wait(seen);
            lock.enter();
        }
    }
};

CUpdateBucket& CUpdateNotifier::bucketOf(const CUpdateNotifier* notifier)
{
    // Made by the first notifier, so that it outlives static ones.
    static std::array<CUpdateBucket, 64> buckets;
    const auto p = reinterpret_cast<std::uintptr_t>(notifier);
    return buckets[(p >> 4 ^ p >> 12 ^ p >> 20 ^ p >> 28) & 63];
}

CUpdateListener::~CUpdateListener()
{
    detach();
}

void CUpdateListener::attach(CUpdateNotifier* newNotifier, std::uint64_t param)
{
    detach();
    if (!newNotifier)
        return;
    CUpdateBucket& joined = CUpdateNotifier::bucketOf(newNotifier);
    CLockScope hold(joined.lock);
    if (!joined.alive.contains(newNotifier))
        return;
    bucket.store(&joined);
    newNotifier->join(*this, newNotifier->getUpdateKind(param));
}

void CUpdateListener::detach()
{
    CUpdateBucket* former = bucket.load();
    if (!former)
        return;
    CLockScope hold(former->lock);
    if (CUpdateNotifier* alive = notifier.load()) {
        alive->leave(*this);
        notifier.store(nullptr);
    }
    // Even one that has left: it may have done so in a call that is still running.
    former->waitForCallsOf(this);
}

CUpdateNotifier::CUpdateNotifier()
{
    CUpdateBucket& bucket = bucketOf(this);
    CLockScope hold(bucket.lock);
    bucket.alive.add(this);
}

CUpdateNotifier::~CUpdateNotifier()
{
    CUpdateBucket& bucket = bucketOf(this);
    CLockScope hold(bucket.lock);
    bucket.alive.remove(this);
    // A listener whose pointer is cleared may be deleted at once by another thread: the store is
    // the last that is done with it.
    for (auto& ofKind : listeners)
        for (auto& entry : ofKind.value)
            entry.value->notifier.store(nullptr);
}

std::uint64_t CUpdateNotifier::getUpdateKind(std::uint64_t param)
{
    return param;
}

void CUpdateNotifier::join(CUpdateListener& listener, std::uint64_t kind)
{
    listener.kind = kind;
    listener.place = nextPlace++;
    listeners[kind][listener.place] = &listener;
    listener.notifier.store(this);
}

void CUpdateNotifier::leave(CUpdateListener& listener)
{
    CListeners* ofKind = listeners.find(listener.kind);
    assert(ofKind);
    ofKind->remove(listener.place);
    if (ofKind->isEmpty())
        listeners.remove(listener.kind);
}

// The listener behind `place`, which moves on, and before `end`; the bucket's lock is held.
CUpdateListener* CUpdateNotifier::nextListener(std::uint64_t kind, std::uint64_t& place,
                                               std::uint64_t end) const
{
    const CListeners* ofKind = listeners.find(kind);
    const auto* entry = ofKind ? ofKind->firstAbove(place) : nullptr;
    if (!entry || entry->key >= end)
        return nullptr;
    place = entry->key;
    return entry->value;
}

void CUpdateNotifier::broadcast(const CUpdateMessage* message)
{
    static const CUpdateMessage noMessage;
    const CUpdateMessage& sent = message ? *message : noMessage;
    CLockScope oneAtATime(broadcastLock);
    CUpdateBucket& bucket = bucketOf(this);
    std::uint64_t place = 0;
    std::uint64_t end = 0;
    for (;;) {
        CUpdateCall call{nullptr, currentThreadId(), nullptr};
        {
            CLockScope hold(bucket.lock);
            if (end == 0)
                end = nextPlace;
            CUpdateListener* listener = nextListener(sent.kind, place, end);
            if (!listener)
                return;
            call.listener = listener;
            bucket.beginCall(call);
        }
        // The pointer is good until the call ends: who detaches it meanwhile waits, or is inside.
        const_cast<CUpdateListener*>(call.listener)->onUpdate(sent);
        bucket.endCall(call);
    }
}

bool CUpdateNotifier::hasListeners(std::uint64_t kind) const
{
    CLockScope hold(bucketOf(this).lock);
    return listeners.contains(kind);
}

} // namespace tsm
