#pragma once

#include "Core/CInputStream.h"

#include <cstdint>
#include <functional>
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

/// Reads the answer to a request for the meters' data, and hands on each reading of a meter; data
/// of other kinds are passed over. Errors: damaged data; what stood before is handed on.
[[nodiscard]] CError* readMeterData(CInputStream& stream,
                                    const std::function<void(const CMeterReading&)>& take);

} // namespace tsm
