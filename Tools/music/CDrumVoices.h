#pragma once

#include "Tools/Support/CSoundBuffer.h"
#include "Tools/music/CMusicScore.h"

namespace tsm {

/// Adds one stroke of the kick, the snare or a hat to `out`, which is stereo; what reaches beyond
/// its end is left out. The sound depends on the note and the rate alone.
void addDrum(const CNote& note, CSoundBuffer& out);

} // namespace tsm
