#include "Tools/impulse/CTapeResponse.h"

#include "Tools/impulse/TapeLosses.h"

#include <cmath>
#include <numbers>

namespace tsm {
namespace {

constexpr double kMetresPerInch = 0.0254;
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kEdgesUnheard = 1e-9;
constexpr double kRadiansPerMinute = kTwoPi / (360.0 * 60.0);

/// Butterworth filters of the second order.
double lowCut(double hz, double cutHz)
{
    const double x = hz / cutHz;
    return x * x / std::sqrt(1.0 + x * x * x * x);
}
double highCut(double hz, double cutHz)
{
    const double x = hz / cutHz;
    return 1.0 / std::sqrt(1.0 + x * x * x * x);
}

double lead(double hz, double zeroHz, double poleHz)
{
    return std::hypot(1.0, hz / zeroHz) / std::hypot(1.0, hz / poleHz);
}

/// What of the losses doesn't need to know its neighbour.
double lossesAt(double wavenumber, const CTapeMachine& machine)
{
    constexpr double um = 1e-6;
    return spacingLoss(wavenumber, (machine.spacingUm + machine.transitionUm) * um) *
           thicknessLoss(wavenumber, machine.coatingUm * um) *
           gapLoss(wavenumber, machine.gapUm * um) *
           azimuthLoss(wavenumber, machine.trackMm * 1e-3,
                       machine.azimuthMinutes * kRadiansPerMinute);
}

} // namespace

bool CTapeResponse::make(const CTapeMachine& machine, double rate, std::size_t binCount)
{
    magnitudes.assign(binCount, 0.0);
    binHz = rate / 2.0 / static_cast<double>(binCount - 1);
    makeLosses(machine);
    if (!align(machine))
        return false;
    const double scale = 1.0 / at(kReferenceHz);
    for (double& magnitude : magnitudes)
        magnitude *= scale;
    return true;
}

void CTapeResponse::makeLosses(const CTapeMachine& machine)
{
    const double speed = machine.speedIps * kMetresPerInch;
    const double lift = machine.liftMm * 1e-3;
    CBesselIntegral integral;
    for (std::size_t bin = 0; bin < magnitudes.size(); ++bin) {
        const double hz = static_cast<double>(bin) * binHz;
        const double wavenumber = kTwoPi * hz / speed;
        double magnitude = lossesAt(wavenumber, machine) * lowCut(hz, machine.lowCutHz) *
                           highCut(hz, machine.highCutHz);
        // Behind where the edges are heard the integral would only take time.
        if (spacingLoss(wavenumber, lift) > kEdgesUnheard)
            magnitude *= contourEffect(
                wavenumber, lift, integral.advanceTo(wavenumber * machine.headMm * 1e-3 / 2.0));
        magnitudes[bin] = magnitude;
    }
}

bool CTapeResponse::align(const CTapeMachine& machine)
{
    const double wanted =
        std::pow(10.0, machine.alignDb / 20.0) * at(kReferenceHz) / at(machine.alignHz);
    const auto rise = [&](double zeroHz) {
        return lead(machine.alignHz, zeroHz, machine.leadLimitHz) /
               lead(kReferenceHz, zeroHz, machine.leadLimitHz);
    };
    // The rise falls with the zero's frequency. One above the pole's cuts instead of lifting.
    double low = kReferenceHz / 10.0;
    double high = 10.0 * machine.leadLimitHz;
    if (!(rise(low) >= wanted && rise(high) <= wanted))
        return false;
    for (int i = 0; i < 60; ++i) {
        const double middle = std::sqrt(low * high);
        (rise(middle) > wanted ? low : high) = middle;
    }
    for (std::size_t bin = 0; bin < magnitudes.size(); ++bin)
        magnitudes[bin] *= lead(static_cast<double>(bin) * binHz, low, machine.leadLimitHz);
    return true;
}

double CTapeResponse::at(double hz) const
{
    const double place = hz / binHz;
    const auto bin = static_cast<std::size_t>(place);
    if (bin + 1 >= magnitudes.size())
        return magnitudes.back();
    const double share = place - static_cast<double>(bin);
    return magnitudes[bin] * (1.0 - share) + magnitudes[bin + 1] * share;
}

} // namespace tsm
