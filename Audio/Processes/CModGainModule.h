#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/Processes/CMuteNoise.h"

namespace tsm {

/// Gain, mute and phase inversion of one channel.
class CModGainModule : public CAudioModule {
public:
    void init() override;
    void update() override;
    void registerParams() override;

    /// At unity the outputs are the input blocks themselves. [audio] Takes one block from the pool
    /// for each module that isn't at unity.
    static void processModules(CAudioModule* const* modules, int count);

private:
    void process();

    CAudioModuleParam gain; // linear
    CAudioModuleParam mute;
    CAudioModuleParam phaseInvert;
    CMuteNoise noise;
    double multiplier = 1.0;
    bool isMuted = false;
    bool isUnity = true;
};

} // namespace tsm
