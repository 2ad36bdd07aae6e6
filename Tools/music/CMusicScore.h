#pragma once

#include "Tools/Support/CMusicSections.h"

#include <vector>

namespace tsm {

enum class EInstrument { Kick, Snare, Hat, OpenHat, Bass, Piano };

/// One note: when, what, how long and how hard.
struct CNote {
    EInstrument instrument;
    double start; // seconds from the start of the section
    double held;  // seconds
    int pitch;    // MIDI note number; drums ignore it
    double force; // 0.0 to 1.0
};

/// The notes of one section, `seconds` long, ordered by instrument: a two-bar phrase at 120 beats a
/// minute with swung sixteenths, repeated as often as whole bars fit; what is left over after them
/// is a last chord on the beat. The sine section has no notes.
[[nodiscard]] std::vector<CNote> scoreOfSection(EMusicSection section, double seconds);

} // namespace tsm
