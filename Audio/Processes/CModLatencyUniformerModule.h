#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/CDSPModDelay.h"
#include "Core/CPtr.h"

namespace tsm {

/// Delays one channel by what its inputs lack to the table's latency. A rate without an entry and a
/// chain that is later than its entry are logged, and the signal passes undelayed.
class CModLatencyUniformerModule : public CAudioModule {
public:
    void init() override;
    void reset() override;
    void update() override;

    /// [audio] Takes a block from the pool for each module.
    static void processModules(CAudioModule* const* modules, int count);

private:
    [[nodiscard]] int chooseDelay();
    void process();

    CPtr<CDSPModDelay> delay;
};

} // namespace tsm
