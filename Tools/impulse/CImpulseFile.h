#pragma once

#include "Tools/impulse/CTapeMachine.h"

#include <string>
#include <vector>

namespace tsm {

/// Packs an impulse as a sound file.
class CImpulseFile {
public:
    /// A RIFF wave file of one channel, the same bytes at every run. False, with a text for the
    /// user in `error`, when the library refuses.
    [[nodiscard]] static bool make(const CImpulseSpec& spec, const std::vector<double>& samples,
                                   std::string& bytes, std::string& error);
};

} // namespace tsm
