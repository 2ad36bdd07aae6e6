#pragma once

#include "Audio/CAudioParam.h"

namespace tsm {

/// Texts that tell a user about a parameter that has a description. Numbers appear in display form
/// without their unit, the elements of a list divided by commas. [any]
class CParamTexts {
public:
    explicit CParamTexts(const CAudioParam& described);

    /// "-30.0 to 30.0"; empty for texts and binary data.
    [[nodiscard]] CString range() const;
    [[nodiscard]] CString defaults() const;
    [[nodiscard]] CString present() const;
    [[nodiscard]] CString unit() const;

private:
    [[nodiscard]] bool isNumber() const;
    [[nodiscard]] CString format(double real) const;
    [[nodiscard]] CString join(const CAudioParamStorage& storage) const;

    const CAudioParam& param;
    const CAudioParamInfo& info;
};

} // namespace tsm
