#include "Audio/Converters/CAudioParamConverter.h"

#include "Audio/CAudioParamInfo.h"
#include "Core/CText.h"

#include <algorithm>

namespace tsm {

double CAudioParamConverter::parse(const CAudioParamInfo& info, int e, const CString& text,
                                   bool& ok) const
{
    double display = 0.0;
    ok = readDisplay(info, e, text, display);
    return clampReal(info, e, ok ? toReal(display) : info.minValues[e]);
}

double CAudioParamConverter::parseUnclamped(const CAudioParamInfo& info, int e, const CString& text,
                                            bool& ok) const
{
    double display = 0.0;
    ok = readDisplay(info, e, text, display);
    return toReal(ok ? display : 0.0);
}

double CAudioParamConverter::normToReal(const CAudioParamInfo& info, int e, double x) const
{
    return info.minValues[e] + (info.maxValues[e] - info.minValues[e]) * x;
}

double CAudioParamConverter::realToNorm(const CAudioParamInfo& info, int e, double r) const
{
    return (r - info.minValues[e]) / (info.maxValues[e] - info.minValues[e]);
}

double CAudioParamConverter::normToDisplay(const CAudioParamInfo& info, int e, double x) const
{
    return toDisplay(normToReal(info, e, x));
}

double CAudioParamConverter::displayToNorm(const CAudioParamInfo& info, int e, double d) const
{
    return realToNorm(info, e, clampReal(info, e, toReal(d)));
}

CError* CAudioParamConverter::init()
{
    TSM_TRY(CObject::init());
    label = getAttrString("label");
    isDiscrete = getAttrBool("is-discrete");
    return nullptr;
}

void CAudioParamConverter::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

double CAudioParamConverter::toDisplay(double real) const
{
    return real;
}

double CAudioParamConverter::toReal(double display) const
{
    return display;
}

bool CAudioParamConverter::readDisplay(const CAudioParamInfo&, int, const CString& text,
                                       double& display) const
{
    return parseDouble(text, display);
}

double CAudioParamConverter::clampReal(const CAudioParamInfo& info, int e, double real)
{
    const auto [low, high] = std::minmax(info.minValues[e], info.maxValues[e]);
    return std::min(std::max(real, low), high);
}

} // namespace tsm
