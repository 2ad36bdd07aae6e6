#pragma once

#include "Audio/CAudioProcessTerminalBase.h"

namespace tsm {

/// The terminal process of module class `M`: `class CModGain : public
/// CAudioProcessTerminal<CModGainModule> {};`
template <class M>
class CAudioProcessTerminal : public CAudioProcessTerminalBase {
protected:
    [[nodiscard]] CAudioModule* createModule() const override { return new M; }
    void processModules(CAudioModule* const* modules, int count) override
    {
        M::processModules(modules, count);
    }
};

} // namespace tsm
