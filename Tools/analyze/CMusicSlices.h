#pragma once

#include "Tools/Support/CMusicSections.h"
#include "Tools/Support/CSoundBuffer.h"

namespace tsm {

/// A section of music that is `seconds` long, less `margin` of its length at either end.
[[nodiscard]] inline CSoundBuffer sliceOfSection(const CSoundBuffer& sound, double seconds,
                                                 EMusicSection kind, double margin)
{
    for (const CMusicSection& section : musicSections(seconds)) {
        if (section.kind != kind)
            continue;
        const double length = section.end - section.start;
        const double start = section.start + margin * length;
        return sound.slice(static_cast<std::size_t>(start * sound.rate),
                           static_cast<std::size_t>((1.0 - 2.0 * margin) * length * sound.rate));
    }
    return sound.slice(0, 0);
}

/// The steady middle of the sine. A tenth of the section is left out at either end: the fades, and
/// what the effect needs to settle after the chords.
[[nodiscard]] inline CSoundBuffer steadySine(const CSoundBuffer& sound, double seconds)
{
    return sliceOfSection(sound, seconds, EMusicSection::Sine, 0.1);
}

} // namespace tsm
