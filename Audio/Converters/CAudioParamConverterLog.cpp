#include "Audio/Converters/CAudioParamConverterLog.h"

#include "Audio/CAudioParamInfo.h"

#include <cmath>
#include <limits>

namespace tsm {

namespace {

// Keeps what can't stand on a logarithmic line out of the logarithm.
double positive(double value)
{
    return std::fmax(value, std::numeric_limits<double>::min());
}

} // namespace

bool CAudioParamConverterLog::isBent() const noexcept
{
    return std::abs(scalePower - 1.0) > std::numeric_limits<double>::epsilon();
}

double CAudioParamConverterLog::normToReal(const CAudioParamInfo& info, int e, double x) const
{
    double low = positive(info.minValues[e]);
    double high = positive(info.maxValues[e]);
    double y = x;
    const bool hasThreshold = scaleThreshold > 0.0;
    if (hasThreshold && x >= scaleThreshold) {
        // With the threshold at the very end only that end is above it.
        y = scaleThreshold < 1.0 ? (x - scaleThreshold) / (1.0 - scaleThreshold) : 0.0;
        low = 1.0;
    } else {
        if (hasThreshold) {
            y = x / scaleThreshold;
            high = 1.0;
        }
        if (isBent())
            y = std::pow(std::fmax(y, 0.0), 1.0 / scalePower);
    }
    return std::exp(std::log(low) + std::log(high / low) * y);
}

double CAudioParamConverterLog::realToNorm(const CAudioParamInfo& info, int e, double r) const
{
    const double low = positive(info.minValues[e]);
    double high = positive(info.maxValues[e]);
    const double real = positive(r);
    double scale = 1.0;
    if (scaleThreshold > 0.0) {
        if (real >= 1.0)
            return scaleThreshold + (1.0 - scaleThreshold) * std::log(real) / std::log(high);
        high = 1.0;
        scale = scaleThreshold;
    }
    const double a = std::log(real / low) / std::log(high / low);
    return (isBent() ? std::pow(std::fmax(a, 0.0), scalePower) : a) * scale;
}

CError* CAudioParamConverterLog::init()
{
    TSM_TRY(CAudioParamConverter::init());
    scalePower = getAttrDouble("scale-power");
    if (!(scalePower > 0.0))
        TSM_FAIL("@tsmstr_CAudioParamConverterLog_init_InvalidScalePower "
                 "Invalid 'scale-power' attribute value %1 specified.",
                 getAttrString("scale-power"));
    scaleThreshold = getAttrDouble("scale-threshold");
    if (!(scaleThreshold <= 1.0))
        TSM_FAIL("@tsmstr_CAudioParamConverterLog_init_InvalidScaleThreshold "
                 "Invalid 'scale-threshold' attribute value %1 specified.",
                 getAttrString("scale-threshold"));
    return nullptr;
}

void CAudioParamConverterLog::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverter::declareClass(info);
}

} // namespace tsm
