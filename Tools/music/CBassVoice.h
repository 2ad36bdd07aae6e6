#pragma once

#include "Tools/Support/CSoundBuffer.h"
#include "Tools/music/CMusicScore.h"

namespace tsm {

/// Adds one note of a plucked electric bass to the stereo sound `out`, in the middle: the partials
/// of a string that is plucked at a fifth of its length, upper ones dying first. Only partials
/// below half the rate are made, so that nothing folds back.
void addBassNote(const CNote& note, CSoundBuffer& out);

} // namespace tsm
