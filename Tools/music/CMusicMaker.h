#pragma once

#include "Tools/Support/CSoundBuffer.h"

namespace tsm {

/// Makes the demo's music: drums, bass, electric piano and a sine, each alone, then all but the
/// sine together (musicSections() tells when). Stereo, every section set to its peak level, faded
/// at its borders; the same samples at every run.
class CMusicMaker {
public:
    static constexpr double kMinSeconds = 2.0;
    static constexpr double kMaxSeconds = 600.0;
    static constexpr int kMinRate = 8000;
    static constexpr int kMaxRate = 384000;

    /// `seconds` and `rate` within the limits above.
    [[nodiscard]] static CSoundBuffer make(double seconds, int rate);
};

} // namespace tsm
