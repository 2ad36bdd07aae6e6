#pragma once

#include "Core/CError.h"
#include "Core/CPtr.h"

namespace tsm {

class CPersistentThread;

/// One job for a thread of the pool (`CWorkerThreadPool`); in spite of its name it isn't a thread.
class CWorkerThread : public CCheckedObject {
public:
    CWorkerThread() = default;
    virtual ~CWorkerThread() = default;
    CWorkerThread(const CWorkerThread&) = delete;
    CWorkerThread& operator=(const CWorkerThread&) = delete;

    /// The work. An error reaches the caller of `CWorkerThreadPool::joinThreads`. [worker]
    [[nodiscard]] virtual CError* run() = 0;

    /// The thread that the job is placed with, or null.
    [[nodiscard]] CPersistentThread* getThread() const noexcept { return thread; }

private:
    friend class CPersistentThread;
    friend class CWorkerThreadPool;

    CPtr<CError> error;
    CPersistentThread* thread = nullptr;
};

} // namespace tsm
