#pragma once

#include "rsk/CDSPRealFFT.h"

namespace tsm::rsk {

/// The transforms of the whole process, one for each order, made when first asked for and kept as
/// long as the module is loaded: their tables are constant, so all callers share them.
class CDSPRealFFTPool {
public:
    /// The transform of that order (5 to 20) in the build chosen at its first use.
    /// [any] Takes a lock, and the first call of an order allocates: not for the audio path.
    [[nodiscard]] static const CDSPRealFFT& get(int order);
};

} // namespace tsm::rsk
