#pragma once

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioModule.h"
#include "Audio/Processes/TapeTwins.h"
#include "Core/CRounding.h"

namespace tsm {

/// What the modules of both tape stages have in common: one channel's stage, and the memory of its
/// delay.
template <class Stage>
class CTapeModule : public CAudioModule {
public:
    void reset() override
    {
        if (history)
            stage.reset();
    }

    /// Works all channels of the process in one call, so that they share the flutter. [audio] Takes
    /// one block from the pool for each module.
    static void processModules(CAudioModule* const* modules, int count)
    {
        static_assert(kMaxTapeLanes >= 2 * kMaxPortChannels);
        typename Stage::CLane lanes[kMaxTapeLanes];
        if (count == 0)
            return;
        const int length = modules[0]->getBlockLength();
        for (int i = 0; i < count; ++i) {
            auto& module = static_cast<CTapeModule&>(*modules[i]);
            CAudioBlockRef& output = module.getOutput().buffer;
            output = module.getPool().take(length);
            lanes[i] = {module.getInput().read(), output.write(), &module.stage};
        }
        Stage::process(lanes, count, length);
    }

protected:
    /// Starts the stage again from silence. The delay keeps its block while that is large enough.
    template <class Settings>
    void startStage(const Settings& settings)
    {
        stage.update(settings);
        const int needed = stage.getHistoryCount();
        if (needed > historyCapacity) {
            history = getPool().take(needed);
            historyCapacity = needed;
        }
        stage.setHistory(history.write());
        setLatency(stage.getLatency());
    }

    /// A parameter of the module's own group and element.
    [[nodiscard]] double read(const CAudioModuleParam& param, double otherwise) const noexcept
    {
        return param.value(getGroupIndex(), getElementIndex(), otherwise);
    }
    /// The index of an enumerated parameter: its value, half away from zero.
    [[nodiscard]] int readIndex(const CAudioModuleParam& param) const noexcept
    {
        return roundToInt(read(param, 0.0));
    }

private:
    Stage stage;
    CAudioBlockRef history;
    int historyCapacity = 0; // samples
};

} // namespace tsm
