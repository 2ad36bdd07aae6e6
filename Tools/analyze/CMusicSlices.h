#pragma once

#include "Tools/Support/CMusicSections.h"
#include "Tools/Support/CSoundBuffer.h"

namespace tsm {

/// The steady middle of the sine section of music that is `seconds` long. A tenth of the section is
/// left out at either end: the fades, and what the effect needs to settle after the chords.
[[nodiscard]] inline CSoundBuffer steadySine(const CSoundBuffer& sound, double seconds)
{
    for (const CMusicSection& section : musicSections(seconds)) {
        if (section.kind != EMusicSection::Sine)
            continue;
        const double length = section.end - section.start;
        return sound.slice(static_cast<std::size_t>((section.start + 0.1 * length) * sound.rate),
                           static_cast<std::size_t>(0.8 * length * sound.rate));
    }
    return sound.slice(0, 0);
}

} // namespace tsm
