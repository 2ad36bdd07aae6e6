#pragma once

#include "Tools/Support/CSoundBuffer.h"

#include <cmath>
#include <numbers>

namespace tsm {

/// A mono sound with a value for each time in seconds.
template <typename F>
CSoundBuffer soundOf(int rate, double seconds, F&& valueAt)
{
    CSoundBuffer sound(rate, 1, static_cast<std::size_t>(seconds * rate));
    for (std::size_t i = 0; i < sound.getFrameCount(); ++i)
        sound.channels[0][i] = valueAt(static_cast<double>(i) / rate);
    return sound;
}

/// A sine's value.
inline double sineAt(double time, double hz, double amplitude)
{
    return amplitude * std::sin(2.0 * std::numbers::pi * hz * time);
}

} // namespace tsm
