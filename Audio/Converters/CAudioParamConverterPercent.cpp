#include "Audio/Converters/CAudioParamConverterPercent.h"

#include "Core/CText.h"

namespace tsm {

double CAudioParamConverterPercent::toDisplay(double real) const
{
    return real * 100.0;
}

double CAudioParamConverterPercent::toReal(double display) const
{
    return display / 100.0;
}

void CAudioParamConverterPercent::format(CString& out, const CAudioParamInfo&, int, double real,
                                         EAudioParamFormat mode) const
{
    out = toFixed(toDisplay(real), mode == EAudioParamFormat::Compact ? 0 : 1);
}

void CAudioParamConverterPercent::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverter::declareClass(info);
}

} // namespace tsm
