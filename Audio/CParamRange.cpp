#include "Audio/CParamRange.h"

#include "Core/CRounding.h"
#include "Core/CText.h"

namespace tsm {
namespace {

constexpr int kMinTextLength = 5;

bool parseBound(const CString& text, double step, std::int32_t& bound, bool& isOpen)
{
    isOpen = text == "*";
    double value = 0.0;
    if (!isOpen && !parseDouble(text, value))
        return false;
    bound = roundToInt(value / step);
    return true;
}

} // namespace

bool CParamRange::parse(const CString& text)
{
    *this = CParamRange();
    const int length = text.getLength();
    if (length < kMinTextLength)
        return false;
    const std::uint16_t first = text[0];
    const std::uint16_t last = text[length - 1];
    if ((first != '[' && first != '(') || (last != ']' && last != ')'))
        return false;
    minInclusive = first == '[';
    maxInclusive = last == ']';

    COwnedArray<CString> fields;
    splitText(text.substring(1, length - 2), ';', fields);
    const int count = fields.getCount();
    if (count < 2 || count > 3)
        return false;
    // Written so that a step that is no number fails as well.
    if (count == 3 && !(parseDouble(fields[2], step) && step > 0.0))
        return false;
    if (!parseBound(fields[0], step, min, minOpen) || !parseBound(fields[1], step, max, maxOpen))
        return false;
    present = minOpen || maxOpen || max >= min;
    return present;
}

bool CParamRange::contains(double value) const noexcept
{
    const std::int32_t steps = roundToInt(value / step);
    const bool isAboveMin = minOpen || steps > min || (minInclusive && steps == min);
    const bool isBelowMax = maxOpen || steps < max || (maxInclusive && steps == max);
    return isAboveMin && isBelowMax;
}

} // namespace tsm
