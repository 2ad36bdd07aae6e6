#include "Audio/Converters/CAudioParamConverterRound.h"

#include "Core/CRounding.h"

namespace tsm {

double CAudioParamConverterRound::normToReal(const CAudioParamInfo& info, int e, double x) const
{
    return roundHalfAway(CAudioParamConverter::normToReal(info, e, x));
}

void CAudioParamConverterRound::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverter::declareClass(info);
}

} // namespace tsm
