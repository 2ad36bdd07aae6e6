#pragma once

#include "Audio/VST/Parameter.h"

namespace tsm {
class CAudioExtParam;
} // namespace tsm

/// A host parameter of the engine as the host sees it. Its normalized value is read and written by
/// the interface's and the audio thread at once.
class CAudioWrapperVST3Parameter : public Steinberg::Vst::Parameter {
public:
    /// `param` outlives the object; `index` is its place in the list, and the host's number of it.
    CAudioWrapperVST3Parameter(tsm::CAudioExtParam& param, int index);

    /// The text that the parameter's converter makes of a normalized value.
    void toString(Steinberg::Vst::ParamValue value, Steinberg::Vst::String128 out) const override;
    /// The reverse. A text that isn't understood gives the present value, so that a host that sets
    /// what it got changes nothing. Always true.
    bool fromString(const Steinberg::Vst::TChar* text,
                    Steinberg::Vst::ParamValue& value) const override;
    /// Hands the value to the engine.
    void changed() override;
    /// Takes over what the engine has come to, without handing it back. [any]
    void follow(Steinberg::Vst::ParamValue value) noexcept;

private:
    tsm::CAudioExtParam& extParam;
};
