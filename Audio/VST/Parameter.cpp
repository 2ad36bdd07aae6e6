#include "Audio/VST/Parameter.h"

#include "Audio/VST/VstText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace Steinberg::Vst {

Parameter::Parameter(const ParameterInfo& description)
    : info(description), valueNormalized(description.defaultNormalizedValue)
{
}

bool Parameter::setNormalized(ParamValue value)
{
    if (std::isnan(value))
        return false;
    const ParamValue kept = std::clamp(value, 0.0, 1.0);
    if (valueNormalized.exchange(kept, std::memory_order_relaxed) == kept)
        return false;
    changed();
    return true;
}

void Parameter::toString(ParamValue value, String128 string) const
{
    if (info.stepCount == 1) {
        copyString128(value > 0.5 ? u"On" : u"Off", string);
        return;
    }
    // Not by printf: its decimal separator is that of the host's locale.
    char8 digits[32];
    const auto result =
        std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, 4);
    // Only values far beyond 0 to 1 have more digits than there is room for.
    const char8* const begin = digits;
    const char8* const end = result.ec == std::errc() ? result.ptr : begin;
    copyString128(std::u16string(begin, end), string);
}

bool Parameter::fromString(const TChar* string, ParamValue& value) const
{
    std::string text;
    for (const TChar unit : viewOf(string, kString128Size))
        text += unit < 128 ? static_cast<char8>(unit) : '?';
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    ParamValue number = 0.0;
    const auto result = std::from_chars(text.data() + begin, text.data() + text.size(), number);
    if (result.ec != std::errc() || !std::isfinite(number))
        return false;
    value = number;
    return true;
}

} // namespace Steinberg::Vst
