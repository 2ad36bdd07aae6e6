#pragma once

#include <vector>

namespace tsm {

/// What stands in a sound beside a tone and its harmonics below half the rate.
struct CAliasMeasure {
    /// `sound` is that of a steady tone of `toneHz` behind something that distorts. Harmonics above
    /// half the rate that were folded back stand at known places: their power is summed there,
    /// `kReachHz` to either side, and given in dB below the tone's. Places nearer than kKeepHz to a
    /// harmonic proper are left out, since wow and flutter have side bands.
    [[nodiscard]] static double aliasDb(const std::vector<double>& sound, double rate,
                                        double toneHz);

    static constexpr double kReachHz = 12.0;
    static constexpr double kKeepHz = 1500.0;
    static constexpr int kHighestHarmonic = 140;
};

} // namespace tsm
