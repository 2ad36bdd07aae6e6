#pragma once

#include "Other/CWaveFile.h"

#include <cstddef>
#include <vector>

namespace tsm {

/// Reads what is left of a file, or its next `most` frames, in pieces of `piece` frames; the
/// samples of all channels interleaved go behind those in `samples`.
inline CError* readInterleaved(CWaveFile& file, std::vector<double>& samples, int piece,
                               std::int64_t most = std::int64_t{1} << 40)
{
    const auto channelCount = static_cast<std::size_t>(file.getChannelCount());
    std::vector<std::vector<double>> channels(channelCount,
                                              std::vector<double>(static_cast<std::size_t>(piece)));
    std::vector<double*> pointers;
    for (auto& channel : channels)
        pointers.push_back(channel.data());
    for (std::int64_t done = 0; done < most;) {
        std::int64_t gotten = 0;
        TSM_TRY(file.read(pointers.data(), piece, gotten));
        if (gotten < 0)
            break;
        for (std::size_t i = 0; i < static_cast<std::size_t>(gotten); ++i)
            for (const auto& channel : channels)
                samples.push_back(channel[i]);
        done += gotten;
    }
    return nullptr;
}

} // namespace tsm
