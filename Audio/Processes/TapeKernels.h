#pragma once

#include "Audio/Processes/CTapeCoefficients.h"
#include "Audio/Processes/CTapeState.h"

namespace tsm {

/// The rates the stages compute their coefficients for; what lies outside is treated as the limit.
constexpr double kTapeMinRate = 8000.0;
constexpr double kTapeMaxRate = 12288000.0;
/// The nominal delay at the highest rate: ceil(2 / 44100 of it).
constexpr int kTapeMaxCenter = 558;

/// Samples of the past that a read can reach: the flutter moves it by the nominal delay at most,
/// and it takes four.
constexpr int tapeHistoryCount(int center) noexcept
{
    return 2 * center + 3;
}

enum class EKernelBuild { Generic, Fma };

/// One channel for a kernel: `in` and `out` hold the block and don't overlap.
struct CTapeLane {
    const double* in;
    double* out;
    CTapeState* state;
};

/// The two stages' arithmetic in one build. The lanes of one call have equal coefficients and
/// equal flutter states; they share the flutter's computation. Flush-to-zero is the caller's.
struct CTapeKernels {
    CTapeCoefficients (*updateTape)(const CTapeSettings& settings) noexcept;
    CTapePostCoefficients (*updatePost)(const CTapePostSettings& settings) noexcept;
    void (*processTape)(const CTapeCoefficients& coefficients, const CTapeLane* lanes,
                        int laneCount, int count) noexcept;
    void (*processPost)(const CTapePostCoefficients& coefficients, const CTapeLane* lanes,
                        int laneCount, int count) noexcept;
    /// The saturation curve alone, for displays and measurements.
    double (*saturate)(double value, double hardness) noexcept;
};

/// The build for this processor, or the one a test has chosen. [any]
[[nodiscard]] const CTapeKernels& tapeKernels() noexcept;

/// That build; null when this processor can't run it. [any]
[[nodiscard]] const CTapeKernels* tapeKernels(EKernelBuild build) noexcept;

/// Chooses the build for the whole process; false and no change when the processor can't run it.
/// For tests and measurements. [setup]
bool selectTapeKernels(EKernelBuild build) noexcept;

} // namespace tsm
