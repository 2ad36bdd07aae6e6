#pragma once

#include "Audio/Converters/CAudioParamConverter.h"

namespace tsm {

/// Shares of one, shown in per cent.
class CAudioParamConverterPercent : public CAudioParamConverter {
public:
    void format(CString& out, const CAudioParamInfo& info, int e, double real,
                EAudioParamFormat mode) const override;
    static void declareClass(CObjectClassInfo& info);

protected:
    [[nodiscard]] double toDisplay(double real) const override;
    [[nodiscard]] double toReal(double display) const override;
};

} // namespace tsm
