#include "Audio/Processes/CRanmar.h"

namespace tsm {

CRanmar::CRanmar(int i, int j, int k, int l) noexcept
{
    constexpr int kBits = 24;
    for (double& value : table) {
        value = 0.0;
        double bit = 0.5;
        for (int n = 0; n < kBits; ++n, bit *= 0.5) {
            const int m = i * j % 179 * k % 179;
            i = j;
            j = k;
            k = m;
            l = (53 * l + 1) % 169;
            if (l * m % 64 >= 32)
                value += bit;
        }
    }
}

double CRanmar::next() noexcept
{
    constexpr double kCarryStep = 7654321.0 / 16777216.0;
    constexpr double kCarryModulus = 16777213.0 / 16777216.0;
    double value = table[first] - table[second];
    if (value < 0.0)
        value += 1.0;
    table[first] = value;
    first = (first + kCount - 1) % kCount;
    second = (second + kCount - 1) % kCount;
    carry -= kCarryStep;
    if (carry < 0.0)
        carry += kCarryModulus;
    value -= carry;
    return value < 0.0 ? value + 1.0 : value;
}

} // namespace tsm
