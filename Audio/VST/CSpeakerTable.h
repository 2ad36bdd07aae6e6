#pragma once

#include "Core/COwnedArray.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

/// What the product knows of speaker arrangements: sets of speakers, one bit each.
class CSpeakerTable {
public:
    static constexpr int kMaxChannels = 8;

    /// The usual arrangement of at most `channelCount` (1 and above) channels. [any]
    [[nodiscard]] static std::uint64_t findArrangement(int channelCount) noexcept;
    /// Adds the labels of the arrangement's speakers, lowest bit first; a speaker without a label
    /// adds an empty text. [any]
    static void listLabels(std::uint64_t arrangement, COwnedArray<CString>& labels);
};

} // namespace tsm
