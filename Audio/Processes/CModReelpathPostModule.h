#pragma once

#include "Audio/Processes/CTapeModule.h"
#include "Audio/Processes/CTapePostStage.h"

namespace tsm {

/// The stage behind the impulse on one channel; updated as the tape stage is.
class CModReelpathPostModule : public CTapeModule<CTapePostStage> {
public:
    void update() override;
    void registerParams() override;

private:
    CAudioModuleParam flutter;
    CAudioModuleParam emphasis;
    CAudioModuleParam highGain;
    CAudioModuleParam flutterMode;
};

} // namespace tsm
