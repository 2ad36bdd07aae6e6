#include "Tools/hostlib/CVstString.h"

#include "Audio/VST/VstText.h"

#include <charconv>
#include <cstdio>

namespace tsm {

CString fromVstText(const Steinberg::Vst::TChar* text)
{
    CString converted;
    for (const char16_t unit : Steinberg::viewOf(text, Steinberg::Vst::kString128Size))
        converted.appendChar(unit);
    return converted;
}

std::u16string toVstText(const CString& text)
{
    std::u16string converted;
    for (int i = 0; i < text.getLength(); ++i)
        converted += static_cast<char16_t>(text[i]);
    return converted;
}

CString fromVstField(std::string_view field)
{
    return CString::fromUtf8(field.substr(0, field.find('\0')));
}

std::string toIdText(const Steinberg::TUID id)
{
    std::string digits;
    for (int i = 0; i < 16; ++i) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned char>(id[i]));
        digits += pair;
    }
    return digits;
}

bool parseIdText(std::string_view digits, Steinberg::TUID id)
{
    if (digits.size() != 32)
        return false;
    for (std::size_t i = 0; i < 16; ++i) {
        unsigned char byte = 0;
        const char* pair = digits.data() + 2 * i;
        const auto result = std::from_chars(pair, pair + 2, byte, 16);
        if (result.ec != std::errc() || result.ptr != pair + 2)
            return false;
        id[i] = static_cast<char>(byte);
    }
    return true;
}

} // namespace tsm
