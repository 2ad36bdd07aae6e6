#pragma once

#include "Audio/Converters/CAudioParamConverter.h"

namespace tsm {

/// Texts, which have no number: reading one gives 0 and fails.
class CAudioParamConverterText : public CAudioParamConverter {
public:
    [[nodiscard]] double parse(const CAudioParamInfo& info, int e, const CString& text,
                               bool& ok) const override;
    [[nodiscard]] double parseUnclamped(const CAudioParamInfo& info, int e, const CString& text,
                                        bool& ok) const override;
    /// The text whose id `real` is among the parameter's defaults, empty for any other: the texts
    /// of the moment are asked of the parameter itself.
    void format(CString& out, const CAudioParamInfo& info, int e, double real,
                EAudioParamFormat mode) const override;
    static void declareClass(CObjectClassInfo& info);
};

} // namespace tsm
