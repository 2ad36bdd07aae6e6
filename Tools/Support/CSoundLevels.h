#pragma once

#include <cstdint>

namespace tsm {

/// Peak and RMS of all samples given to it, linear, full scale 1.0, over all channels together.
/// Samples that are not finite count as silence, as the engine reads them.
class CSoundLevels {
public:
    void add(const double* samples, std::int64_t count) noexcept;
    [[nodiscard]] double getPeak() const noexcept { return peak; }
    [[nodiscard]] double getRms() const noexcept;

private:
    double peak = 0.0;
    double squareSum = 0.0;
    std::int64_t total = 0;
};

} // namespace tsm
