#include "Core/CRounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tsm {

namespace {

// From here on every double is an integer, and adding a half would round.
constexpr double kAllIntegers = 0x1p52;

} // namespace

double roundHalfAway(double value) noexcept
{
    if (!(std::abs(value) < kAllIntegers))
        return value;
    return value < 0.0 ? -std::floor(0.5 - value) : std::floor(value + 0.5);
}

std::int32_t roundToInt(double value) noexcept
{
    if (std::isnan(value))
        return 0;
    using Limits = std::numeric_limits<std::int32_t>;
    const double rounded = roundHalfAway(value);
    return static_cast<std::int32_t>(std::clamp(rounded, static_cast<double>(Limits::min()),
                                                static_cast<double>(Limits::max())));
}

} // namespace tsm
