#pragma once

#include <cstdint>
#include <string>

namespace tsm {

/// What a meter has sent of one channel.
struct CMeterReading {
    std::string meter; // the process's name below the main process
    double time = 0.0; // stream time in seconds
    std::uint32_t channel = 0;
    std::uint32_t group = 0;
    double rms = 0.0; // linear
    double peak = 0.0;
};

} // namespace tsm
