#include "rsk/CDSPKaiserWindow.h"

#include <cmath>

namespace tsm::rsk {

namespace {

/// The polynomial with the given coefficients, that of the highest power first.
template <int Count>
double polynomial(const double (&coefficients)[Count], double x) noexcept
{
    double sum = 0.0;
    for (const double coefficient : coefficients)
        sum = sum * x + coefficient;
    return sum;
}

constexpr double kNearCoefficients[] = {0.0045813, 0.0360768, 0.2659732, 1.2067492,
                                        3.0899424, 3.5156229, 1.0};
constexpr double kFarCoefficients[] = {0.00392377,  -0.01647633, 0.02635537,
                                       -0.02057706, 0.00916281,  -0.00157565,
                                       0.00225319,  0.01328592,  0.39894228};
constexpr double kBorder = 3.75;

} // namespace

double besselI0(double x) noexcept
{
    const double magnitude = std::abs(x);
    const double t = magnitude / kBorder;
    if (magnitude <= kBorder)
        return polynomial(kNearCoefficients, t * t);
    return polynomial(kFarCoefficients, 1.0 / t) * std::exp(magnitude) / std::sqrt(magnitude);
}

CDSPKaiserWindow::CDSPKaiserWindow(double wantedAlpha, double wantedPower) noexcept
    : alpha(wantedAlpha), power(wantedPower), scale(1.0 / besselI0(wantedAlpha))
{
}

double CDSPKaiserWindow::at(double x) const noexcept
{
    const double square = 1.0 - x * x;
    if (square < 0.0)
        return 0.0;
    const double value = besselI0(alpha * std::sqrt(square)) * scale;
    return power == 1.0 ? value : std::pow(value, power);
}

double CDSPKaiserWindow::alphaFor(double attenuationDb) noexcept
{
    return 0.1102 * (attenuationDb - 8.7);
}

double CDSPKaiserWindow::spanFor(double attenuationDb, double widthRadians) noexcept
{
    return (attenuationDb - 8.0) / (2.285 * widthRadians);
}

} // namespace tsm::rsk
