#pragma once

#include "Audio/Converters/CAudioParamConverterLog.h"

namespace tsm {

/// Linear factors, shown in decibels.
class CAudioParamConverterGain : public CAudioParamConverterLog {
public:
    void format(CString& out, const CAudioParamInfo& info, int e, double real,
                EAudioParamFormat mode) const override;
    /// Errors: negative decimals.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

protected:
    [[nodiscard]] double toDisplay(double real) const override;
    [[nodiscard]] double toReal(double display) const override;

private:
    std::int32_t decimals = 1;
};

} // namespace tsm
