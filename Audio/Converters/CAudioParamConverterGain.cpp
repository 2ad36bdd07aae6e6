#include "Audio/Converters/CAudioParamConverterGain.h"

#include "Core/CRounding.h"
#include "Core/CText.h"

#include <cmath>
#include <limits>

namespace tsm {

namespace {

constexpr double kDbPerNeper = 8.685889638065037; // 20 / ln 10

} // namespace

double CAudioParamConverterGain::toDisplay(double real) const
{
    return std::log(std::fmax(real, std::numeric_limits<double>::min())) * kDbPerNeper;
}

double CAudioParamConverterGain::toReal(double display) const
{
    return std::exp(display / kDbPerNeper);
}

void CAudioParamConverterGain::format(CString& out, const CAudioParamInfo&, int, double real,
                                      EAudioParamFormat mode) const
{
    const double db = toDisplay(real);
    const double level = std::abs(db);
    int places = decimals;
    if (mode == EAudioParamFormat::Precise)
        places = 2;
    else if (mode == EAudioParamFormat::Compact)
        places = roundHalfAway(level * 10.0) < 100.0 && roundHalfAway(level * 100.0) >= 1.0;
    out = toFixed(db, places);
}

CError* CAudioParamConverterGain::init()
{
    TSM_TRY(CAudioParamConverterLog::init());
    decimals = getAttrInt("decimals");
    if (decimals < 0)
        TSM_FAIL("@tsmstr_CAudioParamConverterGain_init_InvalidDecimals "
                 "Invalid 'decimals' attribute value %1 specified.",
                 toString(decimals));
    return nullptr;
}

void CAudioParamConverterGain::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverterLog::declareClass(info);
}

} // namespace tsm
