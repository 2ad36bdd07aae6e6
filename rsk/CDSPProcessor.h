#pragma once

#include "rsk/CStdClassAllocator.h"

namespace tsm::rsk {

/// One stage of a chain that changes a signal's rate. A stage is used by one thread at a time.
class CDSPProcessor : public CStdClassAllocator {
public:
    CDSPProcessor() = default;
    CDSPProcessor(const CDSPProcessor&) = delete;
    CDSPProcessor& operator=(const CDSPProcessor&) = delete;
    virtual ~CDSPProcessor() = default;

    /// Whole samples, at the output's rate, by which the first output comes before the first
    /// input's moment. A stage with a filter of linear phase drops its own delay, which leaves 0.
    [[nodiscard]] virtual int getLatency() const { return 0; }
    /// The rest of that delay, 0.0 up to 1.0 sample.
    [[nodiscard]] virtual double getLatencyFrac() const { return 0.0; }
    /// The most samples that `process` returns for `maxInLen` at its input.
    [[nodiscard]] virtual int getMaxOutLen(int maxInLen) const = 0;
    /// Forgets all input: the next sample is the first of a new signal.
    virtual void clear() = 0;
    /// Takes `length` samples (up to the limit the stage was made for) and returns how many are
    /// ready; `output` points at them, in memory of the stage that the next call overwrites.
    /// No allocation, no lock.
    virtual int process(const double* input, int length, const double*& output) = 0;
};

} // namespace tsm::rsk
