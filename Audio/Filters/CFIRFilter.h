#pragma once

#include "Core/CPtr.h"
#include "rsk/CDSPFIRConvolver.h"

namespace tsm {

/// A filter with finite response, run on one channel: in blocks, or with a direct head in front of
/// them that needs no latency. Either starts warm, as if its first sample had stood there for ever,
/// or behind an interpolator for ever between zeros.
class CFIRFilter {
public:
    /// Taps of the head; what follows them is convolved in blocks of the same length.
    static constexpr int kHeadTaps = 64;

    /// In blocks of `blockSize`, brought to a power of 2 from 16 to 16384. [setup] Allocates.
    CFIRFilter(const double* taps, int tapCount, int blockSize);
    /// Without latency. [setup] Allocates.
    CFIRFilter(const double* taps, int tapCount);

    /// Samples by which the output is late, the filter's own delay left out.
    [[nodiscard]] int getLatency() const noexcept;
    /// The next sample is the first one again. [audio]
    void reset() noexcept;
    /// `in` and `out` hold `count` samples and don't overlap. `isSparse` counts at the first call:
    /// every second sample, the second one first, is zero. [audio] No allocation, no lock.
    void process(const double* in, double* out, int count, bool isSparse = false) noexcept;

private:
    void startHead(double value, bool isSparse) noexcept;
    void addHead(const double* in, double* out, int count) noexcept;

    CPtr<rsk::CDSPFIRConvolver> blocks; // null for no more taps than the head's
    int headTaps = 0;
    double head[kHeadTaps] = {};
    // The head's past, twice: the sum over its taps always reads one run of memory.
    double past[2 * kHeadTaps] = {};
    int place = 0;
    bool isHeadStarted = false;
};

} // namespace tsm
