#pragma once

#include "Core/CPtr.h"
#include "Tools/hostlib/CVstInstance.h"

#include <atomic>
#include <thread>

namespace tsm {

/// What a host's own thread does while audio runs, as fast as it can: sets parameters, asks for
/// their texts, saves the state. Ends with the object.
class CControlThread {
public:
    /// The instance is borrowed.
    explicit CControlThread(const CVstInstance& instance);
    ~CControlThread();
    CControlThread(const CControlThread&) = delete;
    CControlThread& operator=(const CControlThread&) = delete;

    /// Ends the work and tells how many rounds there were.
    /// Errors: the plug-in gave no state, an empty text, or there was not a single round.
    [[nodiscard]] CError* finish(int& rounds);

private:
    void run();
    [[nodiscard]] CError* doRound(int round) const;
    void join();

    const CVstInstance& instance;
    std::atomic<bool> isEnding{false};
    std::atomic<int> roundCount{0};
    CPtr<CError> failure; // written by the thread before its end only
    std::thread thread;
};

} // namespace tsm
