#pragma once

#include "Audio/CPendingHostUpdate.h"
#include "Audio/CPendingParamChange.h"
#include "Core/CArray.h"
#include "Core/CPtr.h"
#include "Platform/CCriticalSection.h"

#include <atomic>
#include <cstdint>

namespace tsm {

/// What is to be told of an instance's changes once no lock of a parameter is held any more.
///
/// Listeners hear of all changes in the order in which they were made, whatever the threads; one
/// thread at a time tells them. The host hears of a thread's changes on that thread, since hosts
/// tie what they are told to the call that they are in. The realtime thread tells nobody: what it
/// changed is told by the next thread that makes a change, or that asks for it by deliver().
class CParamUpdateQueue : public CCheckedObject {
public:
    CParamUpdateQueue() = default;
    CParamUpdateQueue(const CParamUpdateQueue&) = delete;
    CParamUpdateQueue& operator=(const CParamUpdateQueue&) = delete;
    /// Drops what is pending.
    ~CParamUpdateQueue();

    /// Keeps back what this thread causes until the matching releaseHold(), and the listeners of
    /// all threads, unless this is the realtime thread. [any]
    void raiseHold();
    /// With the thread's last hold tells what is due. The caller holds no parameter's lock. [any]
    void releaseHold();

    /// Enters a change for the listeners. [any]
    void add(CPtr<CPendingParamChange> change);
    /// Enters a value for the host, told at once when this thread has no hold. [any]
    void addForHost(CPtr<CPendingHostUpdate> update);
    /// Forgets values that the host has overtaken by one of its own. [any]
    void dropForHost(const CAudioExtParamHostBridge& bridge, std::int32_t index) noexcept;
    /// Tells the listeners what is due, unless another thread or an outer call is at it. [any]
    void deliver();

    /// The thread that must not be kept up by listeners, by currentThreadId(); 0 for none. [any]
    void setRealtimeThread(std::uint32_t threadId) noexcept
    {
        // Relaxed: that thread knows what it has stored, and the others ask only about holds, whose
        // lock they have taken behind it.
        realtimeThread.store(threadId, std::memory_order_relaxed);
    }

private:
    struct CThreadHolds {
        std::uint32_t threadId;
        std::int32_t count;
    };

    [[nodiscard]] int findHolds(std::uint32_t threadId) const noexcept;
    [[nodiscard]] CPendingParamChange* takeChange();
    [[nodiscard]] CPendingHostUpdate* takeHostUpdate();
    void unlink(CPendingHostUpdate* update, CPendingHostUpdate* before) noexcept;
    void deliverToHost();

    std::atomic<std::uint32_t> realtimeThread = 0;
    CCriticalSection lock{50};
    CArray<CThreadHolds, 8> holds; // of the threads that have any
    bool isDelivering = false;
    CPendingParamChange* firstChange = nullptr;
    CPendingParamChange* lastChange = nullptr;
    CPendingHostUpdate* firstUpdate = nullptr;
    CPendingHostUpdate* lastUpdate = nullptr;
};

} // namespace tsm
