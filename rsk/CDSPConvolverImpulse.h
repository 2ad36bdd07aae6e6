#pragma once

#include "Core/CArray.h"
#include "Core/COwnedArray.h"
#include "rsk/CAlignedArray.h"
#include "rsk/CDSPDirectFilter.h"
#include "rsk/CStdClassAllocator.h"

#include <cstddef>

namespace tsm::rsk {

/// Doubles from one spectrum of a stage to the next. A cache line more than they have, or all of
/// a stage with large blocks would compete for the same few places in the cache.
[[nodiscard]] constexpr int spectrumStride(int order) noexcept
{
    return (2 << order) + 8;
}

/// One channel's impulse in the form that convolvers work with: cut by `CDSPPartitionPlan` into a
/// head of taps and stages of spectra, times a gain. None of it depends on a convolver's phase or
/// past and nothing changes later, so any number of convolvers on any threads share one.
class CDSPConvolverImpulse : public CStdClassAllocator {
public:
    /// The partitions of one block size, each of 2^order taps.
    struct CStage {
        int order = 0;
        int lag = 0;                      // samples beyond the one block of the stage
        CArray<const double*> partitions; // split spectra, the one with the latest taps first
        CAlignedArray<double> spectra;    // what they point into
    };

    /// Takes the impulse of `length` taps (1 at least) times `gain`. [any] Allocates.
    CDSPConvolverImpulse(const double* taps, int length, double gain);
    CDSPConvolverImpulse(const CDSPConvolverImpulse&) = delete;
    CDSPConvolverImpulse& operator=(const CDSPConvolverImpulse&) = delete;

    [[nodiscard]] const CDSPDirectFilter& getHead() const noexcept { return head; }
    [[nodiscard]] int getStageCount() const noexcept { return stages.getCount(); }
    [[nodiscard]] const CStage& getStage(int index) const noexcept { return stages[index]; }
    /// Doubles of work space that convolvers with this impulse need.
    [[nodiscard]] int getWorkCount() const noexcept;
    /// Memory that taps and spectra take.
    [[nodiscard]] std::size_t getByteCount() const noexcept;

private:
    CDSPDirectFilter head;
    COwnedArray<CStage> stages; // in order of growing blocks
};

} // namespace tsm::rsk
