#pragma once

#include "Audio/Filters/HalfBandKernels.h"

namespace tsm {

/// Base of what a filter keeps for one channel. Empty.
class CDCDAWContextWorkspace {};

/// A half-band low-pass of one channel: two chains of allpass sections in z^-2, of which the second
/// is heard one sample late (Regalia, Mitra and Vaidyanathan, "The digital all-pass filter: a
/// versatile signal processing building block", 1988). Its output is half the sum of both.
class CDCDAWFilterWorkspace : public CDCDAWContextWorkspace {
public:
    /// One channel of a call: `count` samples each; `out` may be `in`.
    struct CLane {
        const double* in;
        double* out;
        CDCDAWFilterWorkspace* filter;
        bool isSparse; // every second sample is zero, the block's second one first
    };

    /// `branches` has `sections` coefficients (1 to 8) of the first chain, then as many of the
    /// second, each in the order in which a sample meets them. The state is clear. [any]
    CDCDAWFilterWorkspace(const double* branches, int sections) noexcept;

    /// Clears the state and keeps the coefficients. [audio]
    void reset() noexcept { state = {}; }
    /// Filters a block of all channels, two equal filters at a time. [audio] No allocation.
    static void process(const CLane* lanes, int laneCount, int count) noexcept;
    /// One channel alone.
    void process(const double* in, double* out, int count) noexcept;

private:
    [[nodiscard]] bool isTwin(const CDCDAWFilterWorkspace& other) const noexcept;
    [[nodiscard]] bool isOtherParitySilent() const noexcept;
    static void runLanes(const CLane* lanes, int laneCount, int count) noexcept;

    int sections;
    double coefficients[kMaxHalfBandSections][2]; // of both chains side by side
    CHalfBandState state;
};

} // namespace tsm
