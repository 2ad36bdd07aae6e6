#pragma once

#include <cstdint>

namespace tsm {

/// White noise, the same on every machine (xorshift64*, Vigna, "An experimental exploration of
/// Marsaglia's xorshift generators, scrambled", 2016).
class CNoise {
public:
    explicit CNoise(std::uint64_t seed) : state(seed | 1U) {}

    /// The next value, -1.0 to 1.0.
    double next()
    {
        state ^= state >> 12;
        state ^= state << 25;
        state ^= state >> 27;
        const std::uint64_t bits = state * 0x2545f4914f6cdd1dULL;
        return static_cast<double>(bits >> 11) * 0x1p-52 - 1.0;
    }

private:
    std::uint64_t state;
};

} // namespace tsm
