#pragma once

#include "Audio/Processes/CImpulseSource.h"
#include "rsk/CDSPPartitionStage.h"

#include <memory>

namespace tsm {

/// An impulse in the form that convolvers work with, at the rate of their process and with its gain
/// in it, and what its file tells of itself. Constant, so that processes share it.
struct CBankedImpulse {
    COwnedArray<rsk::CDSPConvolverImpulse> channels; // of the file's first ones, 1 at least
    int fileChannelCount = 0;
    double fileRate = 0.0; // Hz
    int bits = 0;          // that carry signal
    double seconds = 0.0;  // of the whole file

    [[nodiscard]] std::size_t getByteCount() const noexcept;
};

using CBankedImpulseRef = std::shared_ptr<const CBankedImpulse>;

/// The impulse's channel `index`, or its first where it has fewer; holds all of the impulse.
[[nodiscard]] rsk::CDSPImpulseRef channelOf(const CBankedImpulseRef& impulse, int index);

/// Reads an impulse, at most its first 15 seconds, brings it to `rate` (Hz), finds its gain and
/// makes at least `wantedChannels` of its channels (all for fewer) ready for convolvers. Errors:
/// what can't be opened or read, no samples, samples that are no numbers or beyond any level, a
/// rate that doesn't go together with `rate`. [any] Allocates, and reads the file.
[[nodiscard]] CError* loadImpulse(CBankedImpulseRef& impulse, const CImpulseSource& source,
                                  double rate, int wantedChannels);

} // namespace tsm
