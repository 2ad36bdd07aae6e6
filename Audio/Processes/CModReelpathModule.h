#pragma once

#include "Audio/Processes/CTapeModule.h"
#include "Audio/Processes/CTapeStage.h"

namespace tsm {

/// The tape stage on one channel. Each update starts it again from silence, so its definition asks
/// for smooth updates: changes reach the ear as crossfades to a fresh module.
class CModReelpathModule : public CTapeModule<CTapeStage> {
public:
    void update() override;
    void registerParams() override;

private:
    CAudioModuleParam recGain;
    CAudioModuleParam saturation;
    CAudioModuleParam flutter;
    CAudioModuleParam hardness;
    CAudioModuleParam emphasis;
    CAudioModuleParam highGain; // the stage behind the impulse applies it
    CAudioModuleParam mode;
    CAudioModuleParam flutterMode;
};

} // namespace tsm
