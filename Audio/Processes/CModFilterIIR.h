#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CFilterGenSource.h"
#include "Audio/Processes/CModFilterIIRModule.h"

namespace tsm {

/// A half-band filter of two chains of allpass sections, by a generator of an array.
class CModFilterIIR : public CAudioProcessTerminal<CModFilterIIRModule>, public CFilterGenSource {
public:
    [[nodiscard]] CError* init() override;
};

} // namespace tsm
