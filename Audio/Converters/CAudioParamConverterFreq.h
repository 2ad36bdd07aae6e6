#pragma once

#include "Audio/Converters/CAudioParamConverterLog.h"

namespace tsm {

/// Frequencies in Hz; texts may end in "k" for thousands.
class CAudioParamConverterFreq : public CAudioParamConverterLog {
public:
    void format(CString& out, const CAudioParamInfo& info, int e, double real,
                EAudioParamFormat mode) const override;
    static void declareClass(CObjectClassInfo& info);

protected:
    [[nodiscard]] bool readDisplay(const CAudioParamInfo& info, int e, const CString& text,
                                   double& display) const override;
};

} // namespace tsm
