#pragma once

#include "rsk/CAlignedArray.h"

namespace tsm::rsk {

/// The recent past of a signal, always in one piece of memory, for convolutions that reach back.
class CDSPInputLine {
public:
    /// Makes room for a past of that many samples; what is known stays, before it was silence.
    /// [setup] Allocates.
    void fit(int newPast);
    /// Forgets all. [audio]
    void clear() noexcept;
    /// Adds `count` samples. [audio] No allocation.
    void append(const double* in, int count) noexcept;
    /// The last `count` samples, oldest first; no more than the past that was asked for. The
    /// kKernelPad samples behind them are zero. [audio]
    [[nodiscard]] const double* newest(int count) const noexcept;

private:
    CAlignedArray<double> room;
    int past = 0;
    int end = 0; // of the known samples in `room`, at least `past`
};

} // namespace tsm::rsk
