#pragma once

#include "Audio/CAudioParamInfo.h"

#include <string>
#include <string_view>

namespace tsm {

/// Values of a parameter between what people write and what a preset holds: groups divided by
/// semicolons, their elements by commas, numbers of an element by blanks. Texts stand as they are,
/// with a backslash in front of ",", ";" and "\"; blocks of bytes are hexadecimal digits.
class CBankValues {
public:
    /// How numbers are written.
    enum class EForm {
        Display, ///< as the user reads them, in the converter's units
        Real     ///< as the engine uses them, in all digits
    };

    explicit CBankValues(const CAudioParamInfo& paramInfo) : info(paramInfo) {}

    /// Reads a text into `values`. Otherwise a text that says what is wrong: no value, out of the
    /// parameter's range, another count of numbers than an element has; empty when all is well.
    [[nodiscard]] std::string parse(std::string_view text, EForm form,
                                    CAudioParamStorage& values) const;
    /// Writes values in that form. False when they can't be read back from it as the same, which
    /// happens to numbers with more digits than users see.
    [[nodiscard]] bool print(const CAudioParamStorage& values, EForm form, std::string& text) const;

private:
    [[nodiscard]] std::string parseElement(const std::string& text, EForm form,
                                           CAudioParamChange& change) const;
    [[nodiscard]] std::string parseNumbers(const std::string& text, EForm form,
                                           CAudioParamChange& change) const;
    [[nodiscard]] std::string parseNumber(int e, const std::string& text, EForm form,
                                          double& value) const;
    [[nodiscard]] std::string rangeText(int e) const;
    [[nodiscard]] std::string displayText(int e, double value) const;
    [[nodiscard]] std::string elementText(const CAudioParamChange& change, int element,
                                          EForm form) const;
    [[nodiscard]] static bool isSame(const CAudioParamStorage& a, const CAudioParamStorage& b);

    const CAudioParamInfo& info;
};

} // namespace tsm
