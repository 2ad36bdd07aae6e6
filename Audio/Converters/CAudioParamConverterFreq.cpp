#include "Audio/Converters/CAudioParamConverterFreq.h"

#include "Core/CRounding.h"
#include "Core/CText.h"

namespace tsm {

namespace {

CString inThousands(double hz, int decimals)
{
    return toFixed(hz * 0.001, decimals) + "k";
}

CString formatCompact(double hz, double tenths)
{
    if (tenths < 100.0)
        return toFixed(hz, 1);
    if (tenths < 10000.0)
        return toFixed(hz, 0);
    return inThousands(hz, tenths < 100000.0 ? 1 : 0);
}

CString formatNormal(double hz, double tenths)
{
    if (tenths < 1000.0)
        return toFixed(hz, 1);
    if (roundHalfAway(hz) < 1000.0)
        return toFixed(hz, 0);
    return inThousands(hz, roundHalfAway(0.1 * hz) >= 1000.0 ? 1 : 2);
}

} // namespace

void CAudioParamConverterFreq::format(CString& out, const CAudioParamInfo&, int, double real,
                                      EAudioParamFormat mode) const
{
    const double tenths = roundHalfAway(10.0 * real);
    if (mode == EAudioParamFormat::Precise)
        out = toFixed(real, 2);
    else if (mode == EAudioParamFormat::Compact)
        out = formatCompact(real, tenths);
    else
        out = formatNormal(real, tenths);
}

bool CAudioParamConverterFreq::readDisplay(const CAudioParamInfo&, int, const CString& text,
                                           double& display) const
{
    const int last = text.getLength() - 1;
    if (last < 0 || (text.at(last) != 'k' && text.at(last) != 'K'))
        return parseDouble(text, display);
    const bool ok = parseDouble(text.substring(0, last), display);
    display *= 1000.0;
    return ok;
}

void CAudioParamConverterFreq::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverterLog::declareClass(info);
}

} // namespace tsm
