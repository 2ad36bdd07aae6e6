#pragma once

#include "Audio/Converters/CAudioParamConverter.h"

namespace tsm {

/// Numbers as they are.
class CAudioParamConverterReal : public CAudioParamConverter {
public:
    void format(CString& out, const CAudioParamInfo& info, int e, double real,
                EAudioParamFormat mode) const override;
    /// Errors: negative decimals.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

private:
    std::int32_t decimals = 2;
};

} // namespace tsm
