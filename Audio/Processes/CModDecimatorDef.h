#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModDecimator`. Tag `audio:modDecimator`.
class CModDecimatorDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CAudioProcessBase* createInstance() const override;
};

} // namespace tsm
