#pragma once

#include <cstdint>

namespace tsm {

/// The signal that stands for silence: noise at -220 dB, never zeros, so that filters behind it
/// don't sink into denormal numbers.
class CMuteNoise {
public:
    /// Starts at a point that no other instance of the process has started at (2^31 in a row).
    /// [any] Takes the process-wide lock of the seed counter.
    void init();
    /// Writes `count` samples, each 1e-11 or -1e-11. [audio]
    void fill(double* out, int count) noexcept;

private:
    std::uint32_t state = 0;
};

} // namespace tsm
