#pragma once

#include "Audio/CAudioProcessTerminalBase.h"

namespace tsm {

/// The terminal process of module class `M`: `class CModGain : public
/// CAudioProcessTerminal<CModGainModule> {};`
///
/// `M` has a static `processModules` for all its modules at once, or else a plain `processBlock()`
/// for one, which is called for each.
template <class M>
class CAudioProcessTerminal : public CAudioProcessTerminalBase {
protected:
    static_assert(alignof(M) <= 16, "modules live in blocks of the block allocator");

    [[nodiscard]] CAudioModule* createModule() const override { return new M; }
    void processModules(CAudioModule* const* modules, int count) override
    {
        if constexpr (requires { M::processModules(modules, count); }) {
            M::processModules(modules, count);
        } else {
            for (int i = 0; i < count; ++i)
                static_cast<M*>(modules[i])->processBlock();
        }
    }
};

} // namespace tsm
