#pragma once

#include "Core/CCheckedObject.h"

#include <atomic>
#include <thread>

namespace tsm {

/// Keeps the host's set-up calls and its blocks apart, whatever threads it calls them from. The
/// audio thread never waits: it is told that the engine isn't free.
class CEngineGate : public CCheckedObject {
public:
    /// Claims the engine for a block, if it is free. [audio] No lock.
    class CBlock {
    public:
        explicit CBlock(CEngineGate& owner) noexcept
            : gate(owner), isInside(!owner.isBusy.exchange(true, std::memory_order_acquire))
        {
        }
        ~CBlock()
        {
            if (isInside)
                gate.isBusy.store(false, std::memory_order_release);
        }
        CBlock(const CBlock&) = delete;
        CBlock& operator=(const CBlock&) = delete;
        explicit operator bool() const noexcept { return isInside; }

    private:
        CEngineGate& gate;
        bool isInside;
    };

    /// Claims the engine for a set-up call, behind the block that is running. [control]
    class CSetUp {
    public:
        explicit CSetUp(CEngineGate& owner) noexcept : gate(owner)
        {
            while (gate.isBusy.exchange(true, std::memory_order_acquire))
                std::this_thread::yield();
        }
        ~CSetUp() { gate.isBusy.store(false, std::memory_order_release); }
        CSetUp(const CSetUp&) = delete;
        CSetUp& operator=(const CSetUp&) = delete;

    private:
        CEngineGate& gate;
    };

private:
    std::atomic<bool> isBusy = false;
};

} // namespace tsm
