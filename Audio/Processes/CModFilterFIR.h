#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CFilterGenSource.h"
#include "Audio/Processes/CModFilterFIRModule.h"

namespace tsm {

/// A filter with finite response, designed by a generator of an array.
class CModFilterFIR : public CAudioProcessTerminal<CModFilterFIRModule>, public CFilterGenSource {
public:
    [[nodiscard]] CError* init() override;
};

} // namespace tsm
