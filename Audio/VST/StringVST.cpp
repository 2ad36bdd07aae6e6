#include "Audio/VST/StringVST.h"

#include <algorithm>
#include <cstring>

namespace {

bool isLeadingSurrogate(std::uint16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

} // namespace

void writeText(const tsm::CString& text, Steinberg::Vst::TChar* buffer) noexcept
{
    std::memset(buffer, 0, kMaxTextUnits * sizeof *buffer); // hosts compare all of it
    int count = std::min(text.getLength(), kMaxTextUnits - 1);
    if (count < text.getLength() && isLeadingSurrogate(text.at(count - 1)))
        --count;
    for (int i = 0; i < count; ++i)
        buffer[i] = static_cast<Steinberg::Vst::TChar>(text.at(i));
}

tsm::CString readText(const Steinberg::Vst::TChar* text)
{
    tsm::CString result;
    for (int i = 0; text && i < kMaxTextUnits && text[i]; ++i)
        result.appendChar(text[i]);
    return result;
}
