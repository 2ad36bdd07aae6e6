#pragma once

#include "Audio/Filters/CAudioFilter.h"
#include "Core/CObject.h"
#include "Core/COwnedArray.h"

namespace tsm {

/// Designs filters for modules that name it. Constant after the tree has been loaded.
class CAudioFilterGen : public CObject {
public:
    /// Adds the filters for these values, at `sampleRate` in Hz, to `filters`.
    /// [audio] While parameters change; allocates from the block allocator.
    virtual void generate(const CAudioFilterParams& params, double sampleRate,
                          COwnedArray<CAudioFilter>& filters) const = 0;
};

} // namespace tsm
