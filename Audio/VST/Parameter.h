#pragma once

#include "Audio/VST/Interfaces/IEditController.h"

#include <atomic>

namespace Steinberg::Vst {

/// One parameter of a controller: its description and its normalized value.
///
/// The value may be read and set on any thread; the description stays as constructed.
class Parameter {
public:
    /// The value begins at the default.
    explicit Parameter(const ParameterInfo& description);
    Parameter(const Parameter&) = delete;
    Parameter& operator=(const Parameter&) = delete;
    virtual ~Parameter() = default;

    [[nodiscard]] const ParameterInfo& getInfo() const { return info; }
    [[nodiscard]] ParamValue getNormalized() const
    {
        return valueNormalized.load(std::memory_order_relaxed);
    }
    /// Limits the value to 0 to 1; when that is a new value, stores it, calls changed() and returns
    /// true. What is not a number is no value and changes nothing.
    virtual bool setNormalized(ParamValue value);

    /// Writes the text of a normalized value, at most 127 units: "On" and "Off" of a switch, else
    /// the number with 4 decimals.
    virtual void toString(ParamValue value, String128 string) const;
    /// Reads a number with a decimal point; false, with `value` untouched, when there is none.
    /// `string` is never null.
    virtual bool fromString(const TChar* string, ParamValue& value) const;
    /// Both are the identity here.
    [[nodiscard]] virtual ParamValue toPlain(ParamValue value) const { return value; }
    [[nodiscard]] virtual ParamValue toNormalized(ParamValue plain) const { return plain; }

protected:
    /// A new value has been stored by setNormalized(); on its thread.
    virtual void changed() {}

    ParameterInfo info;
    std::atomic<ParamValue> valueNormalized;
};

} // namespace Steinberg::Vst
