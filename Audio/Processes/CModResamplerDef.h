#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModResampler`. Tag `audio:modResampler`. `is-upsampler` tells the
/// direction; the stages' definitions stand in the shared tree under names of their own.
class CModResamplerDef : public CAudioProcessDefBase {
public:
    /// Errors: the base's. [setup]
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CAudioProcessBase* createInstance() const override;

    [[nodiscard]] bool getIsUpsampler() const noexcept { return isUpsampler; }

private:
    bool isUpsampler = false;
};

} // namespace tsm
