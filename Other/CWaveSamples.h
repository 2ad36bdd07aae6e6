#pragma once

#include "Other/CWaveFormat.h"

#include <cstdint>

namespace tsm {

/// Turns the frames of a sound file into samples.
class CWaveSamples {
public:
    /// Puts `count` frames of `frames` into the channels' arrays, from `firstSample` on. Integers
    /// get a full scale of 1.0 by the bits that they occupy; floats stay as they are. The format
    /// has passed its check; the arrays don't overlap.
    static void decode(const CWaveFormat& format, const std::uint8_t* frames, int count,
                       double* const* channels, std::int64_t firstSample) noexcept;
};

} // namespace tsm
