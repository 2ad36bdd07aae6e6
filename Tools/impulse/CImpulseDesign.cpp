#include "Tools/impulse/CImpulseDesign.h"

#include "Tools/impulse/CTapeResponse.h"
#include "Tools/impulse/MinimumPhase.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tsm {
namespace {

constexpr double kFadeShare = 0.2; // of the length, at its end

std::size_t peakOf(const std::vector<double>& samples)
{
    const auto isSmaller = [](double a, double b) { return std::abs(a) < std::abs(b); };
    return static_cast<std::size_t>(std::max_element(samples.begin(), samples.end(), isSmaller) -
                                    samples.begin());
}

void fadeOut(std::vector<double>& samples)
{
    const double length = kFadeShare * static_cast<double>(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double left = static_cast<double>(samples.size() - i) / length;
        if (left < 1.0)
            samples[i] *= 0.5 - 0.5 * std::cos(std::numbers::pi * left);
    }
}

} // namespace

bool CImpulseDesign::make(const CImpulseSpec& spec, std::string& error)
{
    CTapeResponse response;
    if (!response.make(spec.machine, spec.rate, kBinCount)) {
        error = "impulse '" + spec.name + "' can't be aligned to the wanted level";
        return false;
    }
    const std::vector<double> whole = minimumPhase(response.getMagnitudes());
    const std::size_t peak = peakOf(whole);
    const auto wanted = static_cast<std::size_t>(spec.peakSample);
    if (peak > wanted) {
        error = "impulse '" + spec.name + "' has its peak " + std::to_string(peak) +
                " samples behind its start";
        return false;
    }
    samples.assign(static_cast<std::size_t>(spec.samples), 0.0);
    const std::size_t start = wanted - peak;
    std::copy_n(whole.begin(), samples.size() - start,
                samples.begin() + static_cast<std::ptrdiff_t>(start));
    fadeOut(samples);
    const double scale = spec.peak / samples[wanted];
    for (double& sample : samples)
        sample *= scale;
    return true;
}

} // namespace tsm
