#pragma once

#include "Audio/VST/Parameter.h"

namespace tsm {
class CAudioParamRegistry;
class CAudioWrapper;
} // namespace tsm

/// The current program as a host parameter: a list of the session's presets.
class CAudioWrapperVST3ProgramParameter : public Steinberg::Vst::Parameter {
public:
    static constexpr Steinberg::Vst::ParamID kId = 999;

    /// Both outlive the object; `owner` is named to the registry as the one who changes programs.
    CAudioWrapperVST3ProgramParameter(tsm::CAudioParamRegistry& programs,
                                      tsm::CAudioWrapper& owner);

    [[nodiscard]] int getProgramCount() const noexcept { return programCount; }
    /// The name of a program, by its index. False when there is none.
    bool readName(int index, Steinberg::Vst::String128 out) const;
    /// Takes over the registry's current program, without selecting it. Gives the value. [any]
    Steinberg::Vst::ParamValue follow();

    void toString(Steinberg::Vst::ParamValue value, Steinberg::Vst::String128 out) const override;
    /// Programs are chosen by number: never.
    bool fromString(const Steinberg::Vst::TChar* text,
                    Steinberg::Vst::ParamValue& value) const override;
    /// Between a normalized value and an index; 0 where there is one program only.
    [[nodiscard]] Steinberg::Vst::ParamValue
    toPlain(Steinberg::Vst::ParamValue normalized) const override;
    [[nodiscard]] Steinberg::Vst::ParamValue
    toNormalized(Steinberg::Vst::ParamValue plain) const override;
    /// Selects the program.
    void changed() override;

private:
    tsm::CAudioParamRegistry& registry;
    tsm::CAudioWrapper& wrapper;
    int programCount;
};
