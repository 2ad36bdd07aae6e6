#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModReelpathPost`. Tag `audio:modReelpathPost`.
class CModReelpathPostDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CAudioProcessBase* createInstance() const override;
};

} // namespace tsm
