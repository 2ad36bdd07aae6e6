#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModFilterIIR`. Tag `audio:modFilterIIR`.
class CModFilterIIRDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CAudioProcessBase* createInstance() const override;
};

} // namespace tsm
