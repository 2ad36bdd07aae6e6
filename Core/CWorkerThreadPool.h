#pragma once

#include "Core/CArray.h"
#include "Core/CError.h"
#include "Core/CPtr.h"

namespace tsm {

class CPersistentThread;
class CWorkerThread;

/// The process's sleeping threads, for callers who share short work out: such a caller acquires a
/// thread for each job, wakes them, does a share itself, joins, and releases. A section costs no
/// thread creation but on first use.
class CWorkerThreadPool {
public:
    /// Places `job` with an idle thread, or with a new one when there is none. The thread doesn't
    /// start the job before its `wake()`; the job stays with it until the release. On failure the
    /// job ends; jobs placed before still run, and the caller joins and releases them first.
    /// Errors: the system has no thread. [any]
    [[nodiscard]] static CError* acquireThread(CPersistentThread*& thread, CPtr<CWorkerThread> job);
    /// Waits until no thread of the list is busy. Errors: that of the first job in the list that
    /// had one. [any]
    [[nodiscard]] static CError* joinThreads(const CArray<CPersistentThread*>& list);
    /// Ends the jobs, gives the threads back and empties the list; none is busy. [any]
    static void releaseThreads(CArray<CPersistentThread*>& list);
    /// Ends all idle threads. [any]
    static void clearIdleThreads();
};

} // namespace tsm
