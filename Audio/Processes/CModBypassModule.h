#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/Processes/CMuteNoise.h"

namespace tsm {

/// Passes one channel's processed signal, its dry signal or silence.
///
/// With bypass on the dry signal (second input) passes, or silence where there is none. While
/// another channel group is soloed and the own one isn't, silence passes in any case.
class CModBypassModule : public CAudioModule {
public:
    void init() override;
    void update() override;
    void registerParams() override;

    /// Signals pass as the input blocks themselves. [audio] Takes one block from the pool for each
    /// silent module.
    static void processModules(CAudioModule* const* modules, int count);

private:
    enum class EPass { Processed, Dry, Silence };

    void process();
    [[nodiscard]] EPass choose() const;
    [[nodiscard]] bool isSilencedBySolo() const;
    /// The dry block of this channel; null where the second input doesn't bring it.
    [[nodiscard]] const CAudioBlockRef* findDry() const;

    CAudioModuleParam enable;
    CAudioModuleParam groupSolo; // of all groups
    CMuteNoise noise;
    EPass pass = EPass::Processed;
};

} // namespace tsm
