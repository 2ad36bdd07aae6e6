#pragma once

#include "Tools/Support/CSoundBuffer.h"
#include "Tools/music/CMusicScore.h"

namespace tsm {

/// Adds one note of an electric piano to the stereo sound `out`: two pairs of frequency modulation,
/// body and tine (Chowning, "The synthesis of complex audio spectra by means of frequency
/// modulation", 1973), with a slow tremolo from side to side. The tremolo follows the time in the
/// section, so that all notes of a chord swing as one.
void addPianoNote(const CNote& note, CSoundBuffer& out);

} // namespace tsm
