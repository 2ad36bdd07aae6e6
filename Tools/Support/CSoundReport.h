#pragma once

#include "Tools/Support/CNamedText.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tsm {

/// What a render was and what it took.
struct CSoundReport {
    int rate = 0;
    int channels = 0;
    std::int64_t frames = 0;       // of the input
    std::int64_t outputFrames = 0; // written
    int latency = 0;               // samples
    std::int64_t tail = 0;         // samples
    int block = 0;
    double elapsedSeconds = 0.0;
    double inputPeak = 0.0; // levels are linear, full scale 1.0
    double inputRms = 0.0;
    double outputPeak = 0.0;
    double outputRms = 0.0;
    std::int64_t clipped = 0;           // samples beyond the range of a whole-number format
    std::vector<CNamedText> parameters; // every parameter that was set, with its text at the end

    /// The report as one JSON object over several lines.
    [[nodiscard]] std::string toJson() const;
};

} // namespace tsm
