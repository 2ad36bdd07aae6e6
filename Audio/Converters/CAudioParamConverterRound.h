#pragma once

#include "Audio/Converters/CAudioParamConverter.h"

namespace tsm {

/// Plain mapping to whole numbers.
class CAudioParamConverterRound : public CAudioParamConverter {
public:
    [[nodiscard]] double normToReal(const CAudioParamInfo& info, int e, double x) const override;
    static void declareClass(CObjectClassInfo& info);
};

} // namespace tsm
