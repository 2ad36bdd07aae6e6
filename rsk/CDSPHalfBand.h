#pragma once

namespace tsm::rsk {

/// The taps of a half-band low-pass of linear phase, windowed after Kaiser: but for the center
/// every second tap is zero, and the others are equal in pairs.
struct CDSPHalfBand {
    static constexpr int kMaxPairs = 14;

    /// `bandEdge` is the end of the pass band in parts of the higher rate, below 0.25; the stop
    /// band begins as far below the half rate. The taps of all pairs sum to `gain`.
    CDSPHalfBand(double bandEdge, double attenuationDb, double gain);

    double taps[kMaxPairs]; // pair i stands 2 * i + 1 samples off the center
    int pairCount;
};

} // namespace tsm::rsk
