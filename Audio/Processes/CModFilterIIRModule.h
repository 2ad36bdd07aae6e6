#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/Filters/CDCDAWFilterWorkspace.h"

#include <optional>

namespace tsm {

/// The half-band filter of one channel. It reports no latency: its group delay differs from
/// frequency to frequency and is a few samples only. Without a filter of its index the signal
/// passes as it is.
class CModFilterIIRModule : public CAudioModule {
public:
    void reset() override;
    void update() override;
    void registerParams() override;

    /// [audio] Takes a block from the pool for each module that filters.
    static void processModules(CAudioModule* const* modules, int count);

private:
    CAudioModuleParam index;
    std::optional<CDCDAWFilterWorkspace> filter;
};

} // namespace tsm
