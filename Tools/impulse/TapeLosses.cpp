#include "Tools/impulse/TapeLosses.h"

#include <algorithm>
#include <cmath>

namespace tsm {
namespace {

/// |sin(x) / x|
double meanOfCosine(double x)
{
    return std::abs(x) < 1e-9 ? 1.0 : std::abs(std::sin(x) / x);
}

} // namespace

double spacingLoss(double wavenumber, double distance)
{
    return std::exp(-wavenumber * distance);
}

double thicknessLoss(double wavenumber, double depth)
{
    const double x = wavenumber * depth;
    return x < 1e-9 ? 1.0 : -std::expm1(-x) / x;
}

double gapLoss(double wavenumber, double gap)
{
    return meanOfCosine(wavenumber * 1.136 * gap / 2.0);
}

double azimuthLoss(double wavenumber, double trackWidth, double angle)
{
    return meanOfCosine(wavenumber * trackWidth * std::tan(angle) / 2.0);
}

double contourEffect(double wavenumber, double lift, double besselIntegral)
{
    return 1.0 - spacingLoss(wavenumber, lift) * (1.0 - besselIntegral);
}

double CBesselIntegral::advanceTo(double x)
{
    // J0 stays below 1, so steps of an eighth leave Simpson's rule an error below 1e-7 of each.
    const int pieces = std::max(1, static_cast<int>(std::ceil((x - at) * 8.0)));
    const double step = (x - at) / pieces;
    for (int i = 0; i < pieces; ++i) {
        const double left = at + i * step;
        sum += step / 6.0 *
               (std::cyl_bessel_j(0.0, left) + 4.0 * std::cyl_bessel_j(0.0, left + step / 2.0) +
                std::cyl_bessel_j(0.0, left + step));
    }
    at = x;
    return sum;
}

} // namespace tsm
