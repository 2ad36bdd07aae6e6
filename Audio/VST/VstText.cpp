#include "Audio/VST/VstText.h"

#include <algorithm>

namespace Steinberg {

void copyString128(std::u16string_view text, Vst::TChar* string)
{
    const std::size_t count = std::min<std::size_t>(text.size(), Vst::kString128Size - 1);
    std::copy_n(text.begin(), count, string);
    string[count] = 0;
}

std::u16string_view viewOf(const Vst::TChar* text, std::size_t limit)
{
    std::size_t count = 0;
    while (text && count < limit && text[count] != 0)
        ++count;
    return {text, count};
}

} // namespace Steinberg
