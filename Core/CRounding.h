#pragma once

#include <cstdint>

namespace tsm {

/// Rounds half away from zero: floor(v + 0.5), for negatives -floor(0.5 - v).
[[nodiscard]] double roundHalfAway(double value) noexcept;
/// The same as an integer; values beyond the range of the type, and NaN, give the nearest limit
/// and 0.
[[nodiscard]] std::int32_t roundToInt(double value) noexcept;

} // namespace tsm
