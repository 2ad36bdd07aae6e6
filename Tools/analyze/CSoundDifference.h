#pragma once

#include "Tools/analyze/CSoundMeasure.h"

#include <string>

namespace tsm {

/// What is left when one sound is taken from another.
struct CSoundDifference {
    CSoundMeasure rest;       // of second minus first
    CSoundMeasure first;      // of the first sound over the frames compared
    std::size_t frames = 0;   // compared: those that both have
    std::size_t unpaired = 0; // frames that only one of the two has

    /// Compares frame i of `a` with frame i + `delay` of `b`; a negative delay is one of `a`.
    /// False, with a text for the user in `error`, when rates or channels differ or no frame is
    /// common.
    [[nodiscard]] static bool of(const CSoundBuffer& a, const CSoundBuffer& b, long delay,
                                 CSoundDifference& difference, std::string& error);
};

} // namespace tsm
