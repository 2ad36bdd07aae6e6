#include "Tools/Support/CSoundLevels.h"

#include <algorithm>
#include <cmath>

namespace tsm {

void CSoundLevels::add(const double* samples, std::int64_t count) noexcept
{
    double blockSum = 0.0; // summed by blocks: a long file's small samples keep their weight
    for (std::int64_t i = 0; i < count; ++i) {
        const double magnitude = std::isfinite(samples[i]) ? std::abs(samples[i]) : 0.0;
        peak = std::max(peak, magnitude);
        blockSum += magnitude * magnitude;
    }
    squareSum += blockSum;
    total += count;
}

double CSoundLevels::getRms() const noexcept
{
    return total > 0 ? std::sqrt(squareSum / static_cast<double>(total)) : 0.0;
}

} // namespace tsm
