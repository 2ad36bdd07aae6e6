#include "Audio/Converters/CAudioParamConverterTime.h"

#include "Audio/CAudioParamInfo.h"
#include "Core/CRounding.h"
#include "Core/CText.h"

#include <cmath>
#include <limits>

namespace tsm {

namespace {

// A limit of 0 can't stand on a logarithmic line.
double positive(double value)
{
    return std::fmax(value, std::numeric_limits<double>::min());
}

CString formatCompact(double display, double rounded)
{
    if (rounded < 100.0)
        return toFixed(display, rounded < 10.0 ? 1 : 0);
    return toFixed(display * 0.001, rounded < 10000.0 ? 1 : 0) + "*"; // the read-out's thousands
}

} // namespace

double CAudioParamConverterTime::toDisplay(double real) const
{
    return real / scale;
}

double CAudioParamConverterTime::toReal(double display) const
{
    return display * scale;
}

double CAudioParamConverterTime::normToReal(const CAudioParamInfo& info, int e, double x) const
{
    const double low = info.minValues[e];
    const double high = info.maxValues[e];
    if (isLog)
        return std::exp(std::log(positive(low)) + std::log(positive(high) / positive(low)) * x);
    return isExact ? low + (high - low) * x : low + x * ((high - low) * x);
}

double CAudioParamConverterTime::realToNorm(const CAudioParamInfo& info, int e, double r) const
{
    const double low = info.minValues[e];
    const double high = info.maxValues[e];
    if (isLog)
        return std::log(positive(r) / positive(low)) / std::log(positive(high) / positive(low));
    const double share = (r - low) / (high - low);
    return isExact ? share : std::sqrt(std::fmax(share, 0.0));
}

void CAudioParamConverterTime::format(CString& out, const CAudioParamInfo&, int, double real,
                                      EAudioParamFormat mode) const
{
    const double display = toDisplay(real);
    const double rounded = roundHalfAway(std::abs(display));
    if (mode == EAudioParamFormat::Compact) {
        out = formatCompact(display, rounded);
        return;
    }
    int decimals = isPrecise;
    if (isExact || rounded < 10.0)
        decimals += 2;
    else if (rounded < 100.0)
        decimals += 1;
    out = toFixed(display, decimals);
}

CError* CAudioParamConverterTime::init()
{
    TSM_TRY(CAudioParamConverter::init());
    isLog = getAttrBool("is-log");
    isExact = getAttrBool("is-exact");
    isPrecise = getAttrBool("is-precise") ? 1 : 0;
    scale = getAttrDouble("scale");
    if (!(scale > 0.0))
        TSM_FAIL("@tsmstr_CAudioParamConverterTime_init_InvalidScale Invalid scale %1 specified.",
                 getAttrString("scale"));
    return nullptr;
}

void CAudioParamConverterTime::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverter::declareClass(info);
}

} // namespace tsm
