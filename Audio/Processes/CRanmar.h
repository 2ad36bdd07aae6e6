#pragma once

namespace tsm {

/// Uniform random numbers in [0, 1), multiples of 2^-24, that are the same on every machine: the
/// generator RANMAR (Marsaglia, Zaman and Tsang, "Toward a universal random number generator",
/// Statistics & Probability Letters 9, 1990; code and check values in James, "A review of
/// pseudorandom number generators", Computer Physics Communications 60, 1990).
class CRanmar {
public:
    /// The four seeds of the paper: `i`, `j` and `k` from 1 to 178 and not all 1, `l` from 0 to
    /// 168. [any]
    CRanmar(int i, int j, int k, int l) noexcept;

    [[nodiscard]] double next() noexcept;

private:
    static constexpr int kCount = 97;

    double table[kCount];
    double carry = 362436.0 / 16777216.0;
    int first = kCount - 1;
    int second = 32;
};

} // namespace tsm
