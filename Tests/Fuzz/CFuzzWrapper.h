#pragma once

#include "Audio/CAudioWrapper.h"
#include "Audio/ProductCreators.h"
#include "Core/CApplication.h"
#include "Tests/Fuzz/FuzzTarget.h"

#include <cmath>

namespace tsm {

/// An instance whose host hears nothing.
class CFuzzWrapper : public CAudioWrapper {
public:
    void performEdit(std::int32_t, double) override {}
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}

    /// Has the engine take what was changed, and look at a little sound.
    void run()
    {
        constexpr int kCount = 64;
        setSampleRate(44100.0);
        setChannelFormat({2, true, false}, {});
        setOutputFormat({2, true, false});
        startProcessing();
        double samples[2][kCount] = {{0.5}, {-0.5}};
        const void* const inputs[] = {samples[0], samples[1]};
        void* const outputs[] = {samples[0], samples[1]};
        processBlock(inputs, outputs, kCount);
        stopProcessing();
        for (const auto& channel : samples)
            for (const double sample : channel)
                promise(std::isfinite(sample), "what comes out is finite");
    }
};

/// The product's application, once in a process.
inline CApplication& fuzzProduct()
{
    static CApplication application;
    static const bool hasStarted = !hasFailed(startProduct(application));
    promise(hasStarted, "the product starts");
    return application;
}

} // namespace tsm
