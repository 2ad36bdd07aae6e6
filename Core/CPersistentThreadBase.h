#pragma once

#include "Core/CThread.h"

namespace tsm {

/// A thread that sleeps between jobs.
class CPersistentThreadBase : public CThread {
public:
    using CThread::CThread;

    /// Has it do one job. [any]
    virtual void wake() = 0;
};

} // namespace tsm
