#include "Audio/Processes/CMuteNoise.h"

#include "Audio/Processes/CNoiseSeed.h"

namespace tsm {

void CMuteNoise::init()
{
    state = CNoiseSeed::draw();
}

void CMuteNoise::fill(double* out, int count) noexcept
{
    constexpr std::uint32_t kSignBit = 0x800000;
    constexpr double kStep = 2.384185791015625e-18; // 2e-11 for the bit, that is
    static_assert(kStep * kSignBit - 1e-11 == 1e-11);
    std::uint32_t noise = state;
    for (int i = 0; i < count; ++i) {
        noise = noise * 30013 + 30011;
        out[i] = kStep * static_cast<double>(noise & kSignBit) - 1e-11;
    }
    state = noise;
}

} // namespace tsm
