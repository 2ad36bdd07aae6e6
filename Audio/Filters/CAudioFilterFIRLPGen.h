#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tsm {

/// Designs low-passes of linear phase: a sinc under Kaiser's window.
///
/// Reads `length` (seconds), `freq` (Hz), `beta` (of the window) and `fixsr`: with it on, the two
/// are meant at a rate of 44100 Hz and the design is the same at all rates.
class CAudioFilterFIRLPGen : public CAudioFilterGen {
public:
    void generate(const CAudioFilterParams& params, double sampleRate,
                  COwnedArray<CAudioFilter>& filters) const override;
    static void declareClass(CObjectClassInfo& info);
};

} // namespace tsm
