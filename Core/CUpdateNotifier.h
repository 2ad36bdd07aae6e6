#pragma once

#include "Core/CMap.h"
#include "Platform/CCriticalSection.h"

#include <atomic>
#include <cstdint>

namespace tsm {

class CUpdateNotifier;
struct CUpdateBucket;

/// What a notifier sends. Notifiers that have more to tell derive from it.
struct CUpdateMessage {
    const void* sender = nullptr; // who made the change; an identity, never followed
    std::uint64_t kind = 0;
};

/// Hears of one kind of change at one notifier at a time.
///
/// A listener may be attached to a notifier that has gone (nothing happens then), and a notifier
/// may go before its listeners. One thread at a time attaches a given listener; another one may end
/// it while a call makes it leave.
class CUpdateListener : public CCheckedObject {
public:
    CUpdateListener() = default;
    CUpdateListener(const CUpdateListener&) = delete;
    CUpdateListener& operator=(const CUpdateListener&) = delete;
    /// Leaves the notifier. A class whose `onUpdate` uses members of its own attaches itself to
    /// null in its destructor, since they are gone when this one runs.
    virtual ~CUpdateListener();

    /// A change of the kind that was asked for. Called on the thread of the change; it should be
    /// short, and may attach and detach listeners, this one too.
    virtual void onUpdate(const CUpdateMessage& message) = 0;

    /// Leaves the present notifier and joins `newNotifier` (null: none) for the kind that it makes
    /// of `param`. Once it returns, no other thread is inside a call from the former notifier: the
    /// caller holds no lock that `onUpdate` waits for. [any]
    void attach(CUpdateNotifier* newNotifier, std::uint64_t param = 0);
    /// True while a living notifier has this listener. [any]
    [[nodiscard]] bool isAttached() const noexcept { return notifier.load() != nullptr; }

private:
    friend class CUpdateNotifier;

    void detach();

    std::atomic<CUpdateNotifier*> notifier = nullptr; // written under the bucket's lock
    std::atomic<CUpdateBucket*> bucket = nullptr;     // of the last notifier
    std::uint64_t kind = 0;
    std::uint64_t place = 0; // in the order of joining
};

/// A listener that passes on to its owner what it hears.
template <class T>
class COwnedUpdateListener : public CUpdateListener {
public:
    explicit COwnedUpdateListener(T* ownerObject) noexcept : owner(ownerObject) {}
    [[nodiscard]] T* getOwner() const noexcept { return owner; }

private:
    T* owner;
};

/// Tells listeners of changes by kind, in the order in which they joined.
///
/// The links between notifiers and listeners are guarded by 64 bucket locks, chosen by the
/// notifier's address, which no call-back runs under: so the end of a notifier and that of its
/// listeners on other threads can't wait for each other.
class CUpdateNotifier : public CCheckedObject {
public:
    CUpdateNotifier();
    CUpdateNotifier(const CUpdateNotifier&) = delete;
    CUpdateNotifier& operator=(const CUpdateNotifier&) = delete;
    /// Clears the pointers of all listeners. No broadcast of this notifier is running.
    virtual ~CUpdateNotifier();

    /// The kind that stands for what a listener asks for; by default the same number. Called under
    /// a bucket lock: it may take a lock of its own that is never held while attaching.
    [[nodiscard]] virtual std::uint64_t getUpdateKind(std::uint64_t param);

    /// Calls the listeners of the message's kind (kind 0 for null), one broadcast at a time. Those
    /// that join meanwhile aren't called; those that leave before their turn aren't either. [any]
    void broadcast(const CUpdateMessage* message);
    /// True while somebody listens to that kind. [any]
    [[nodiscard]] bool hasListeners(std::uint64_t kind) const;

private:
    friend class CUpdateListener;
    using CListeners = CMap<std::uint64_t, CUpdateListener*>;

    [[nodiscard]] static CUpdateBucket& bucketOf(const CUpdateNotifier* notifier);
    [[nodiscard]] CUpdateListener* nextListener(std::uint64_t kind, std::uint64_t& place,
                                                std::uint64_t end) const;
    void join(CUpdateListener& listener, std::uint64_t kind);
    void leave(CUpdateListener& listener);

    CCriticalSection broadcastLock{4000};
    // By kind, then by place; guarded by the bucket's lock.
    CMap<std::uint64_t, CListeners> listeners;
    std::uint64_t nextPlace = 1;
};

} // namespace tsm
