#include "Audio/Converters/CAudioParamConverterReal.h"

#include "Core/CRounding.h"
#include "Core/CText.h"

#include <cmath>

namespace tsm {

void CAudioParamConverterReal::format(CString& out, const CAudioParamInfo&, int, double real,
                                      EAudioParamFormat mode) const
{
    int places = decimals;
    if (mode == EAudioParamFormat::Compact)
        places = roundHalfAway(std::abs(real) * 10.0) < 100.0 ? 1 : 0;
    out = toFixed(real, places);
}

CError* CAudioParamConverterReal::init()
{
    TSM_TRY(CAudioParamConverter::init());
    decimals = getAttrInt("decimals");
    if (decimals < 0)
        TSM_FAIL("@tsmstr_CAudioParamConverterReal_init_InvalidDecimals "
                 "Invalid decimals %1 specified.",
                 toString(decimals));
    return nullptr;
}

void CAudioParamConverterReal::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverter::declareClass(info);
}

} // namespace tsm
