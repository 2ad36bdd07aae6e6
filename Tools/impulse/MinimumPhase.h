#pragma once

#include <vector>

namespace tsm {

/// The causal impulse response with the given magnitudes that carries its energy as early as there
/// can be: that of the folded cepstrum (Oppenheim and Schafer, "Discrete-Time Signal Processing",
/// ch. 12, 1989). `magnitudes` are those of 2^n + 1 bins from 0 to half the rate; below -200 dB
/// of the largest they count as that. Returns 2^(n + 1) samples; the last half is to be taken as
/// noise of the method.
[[nodiscard]] std::vector<double> minimumPhase(const std::vector<double>& magnitudes);

} // namespace tsm
