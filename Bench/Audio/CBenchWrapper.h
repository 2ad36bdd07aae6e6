#pragma once

#include "Audio/CAudioParam.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioWrapper.h"
#include "Bench/Support/Check.h"

#include <memory>

namespace tsm {

/// An instance whose host hears nothing.
class CBenchWrapper : public CAudioWrapper {
public:
    void performEdit(std::int32_t, double) override {}
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}

    /// A stereo instance at 44.1 kHz with 64-bit channels side by side, not started.
    [[nodiscard]] static std::unique_ptr<CBenchWrapper> make()
    {
        auto wrapper = std::make_unique<CBenchWrapper>();
        check(wrapper->init());
        wrapper->setChannelFormat({2, true, false}, {});
        wrapper->setOutputFormat({2, true, false});
        wrapper->afterInit();
        return wrapper;
    }
    void set(const char* name, double value)
    {
        getParamCollector().find("plugin.modMain." + CString(name))->setValue(0, 0, value);
    }
};

} // namespace tsm
