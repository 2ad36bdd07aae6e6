#include "Audio/CAudioProcessBypassStateDef.h"

#include <cmath>

namespace tsm {
namespace {

// Wide, since the parameters are enumerations.
constexpr double kTolerance = 0.1;

bool isNear(double value, double wanted)
{
    return std::abs(value - wanted) <= kTolerance;
}

/// Leaves `number` alone where the attribute is missing, empty or no number.
void readNumber(const CAttrValue* value, double& number)
{
    if (value && value->getType() != EAttrType::None)
        (void)value->toDouble(number);
}

} // namespace

CError* CAudioProcessBypassStateDef::init()
{
    TSM_TRY(CObject::init());
    if (const CAttrValue* value = getAttr("id"))
        (void)value->toInt(id);
    param = getAttrString("param");
    if (param.isEmpty())
        TSM_FAIL("@tsmstr_CAudioProcessBypassStateDef_init_InvalidParam "
                 "Invalid parameter name specified.");
    andParam = getAttrString("and-param");
    readNumber(getAttr("value"), wanted);
    readNumber(getAttr("and-value"), andWanted);
    const CString& rangeText = getAttrString("range");
    if (!rangeText.isEmpty() && !range.parse(rangeText))
        TSM_FAIL("@tsmstr_CAudioProcessBypassStateDef_init_InvalidRange "
                 "Invalid 'range' attribute value '%1' specified.",
                 rangeText);
    const CString& andRangeText = getAttrString("and-range");
    if (!andRangeText.isEmpty() && !andRange.parse(andRangeText))
        TSM_FAIL("@tsmstr_CAudioProcessBypassStateDef_init_InvalidAndRange "
                 "Invalid 'and-range' attribute value '%1' specified.",
                 andRangeText);
    isInverted = getAttrBool("is-inverted");
    return nullptr;
}

bool CAudioProcessBypassStateDef::matches(double value, double andValue) const noexcept
{
    if (andParam.isEmpty())
        return range.present ? range.contains(value) : isNear(value, wanted);
    if (range.present && andRange.present)
        return range.contains(value) && andRange.contains(andValue);
    return isNear(value, wanted) && isNear(andValue, andWanted);
}

bool CAudioProcessBypassStateDef::isActive(double value, double andValue) const noexcept
{
    return matches(value, andValue) != isInverted;
}

} // namespace tsm
