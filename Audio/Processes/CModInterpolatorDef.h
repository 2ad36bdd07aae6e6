#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModInterpolator`. Tag `audio:modInterpolator`.
class CModInterpolatorDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CAudioProcessBase* createInstance() const override;
};

} // namespace tsm
