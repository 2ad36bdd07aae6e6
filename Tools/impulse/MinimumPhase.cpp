#include "Tools/impulse/MinimumPhase.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>

#include <kissfft.hh>

namespace tsm {

std::vector<double> minimumPhase(const std::vector<double>& magnitudes)
{
    const std::size_t half = magnitudes.size() - 1;
    const std::size_t size = 2 * half;
    const double floor = 1e-10 * *std::max_element(magnitudes.begin(), magnitudes.end());
    std::vector<std::complex<double>> spectrum(size);
    std::vector<std::complex<double>> cepstrum(size);
    for (std::size_t bin = 0; bin <= half; ++bin) {
        spectrum[bin] = std::log(std::max(magnitudes[bin], floor));
        spectrum[(size - bin) % size] = spectrum[bin];
    }
    kissfft<double>(size, true).transform(spectrum.data(), cepstrum.data());
    // Folding puts the anticausal half onto the causal one.
    for (std::size_t i = 0; i < size; ++i) {
        const double fold = i == 0 || i == half ? 1.0 : (i < half ? 2.0 : 0.0);
        cepstrum[i] = cepstrum[i].real() * fold / static_cast<double>(size);
    }
    kissfft<double>(size, false).transform(cepstrum.data(), spectrum.data());
    for (std::complex<double>& value : spectrum)
        value = std::exp(value);
    kissfft<double>(size, true).transform(spectrum.data(), cepstrum.data());
    std::vector<double> impulse(size);
    for (std::size_t i = 0; i < size; ++i)
        impulse[i] = cepstrum[i].real() / static_cast<double>(size);
    return impulse;
}

} // namespace tsm
