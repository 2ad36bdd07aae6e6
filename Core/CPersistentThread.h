#pragma once

#include "Core/CPersistentThreadBase.h"
#include "Core/CPtr.h"
#include "Core/CWorkerThread.h"
#include "Platform/CCriticalSection.h"

namespace tsm {

/// A thread of the pool: it sleeps until it is given a job, and sleeps again when that is done.
class CPersistentThread : public CPersistentThreadBase {
public:
    explicit CPersistentThread(const CString& name) : CPersistentThreadBase(name) {}
    /// Ends the threads linked behind this one, then the job, then this one.
    ~CPersistentThread() override;

    [[nodiscard]] CError* run() override;
    /// Starts the job that was placed here; the thread isn't busy. [any]
    void wake() override;

    /// True from `wake()` to the end of the job, whose results are then visible to the caller.
    /// [any]
    [[nodiscard]] bool getIsBusy();

private:
    friend class CWorkerThreadPool;

    CPtr<CPersistentThread> nextIdle;
    CCriticalSection lock{50};
    bool isBusy = false; // guarded by `lock`
    CPtr<CWorkerThread> job;
};

} // namespace tsm
