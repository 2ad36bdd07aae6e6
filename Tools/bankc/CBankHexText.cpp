#include "Tools/bankc/CBankHexText.h"

#include <charconv>

namespace tsm {

std::string toHexText(const CByteBuffer& bytes)
{
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (int i = 0; i < bytes.getSize(); ++i) {
        text += kDigits[bytes.data()[i] >> 4];
        text += kDigits[bytes.data()[i] & 15];
    }
    return text;
}

bool parseHexText(std::string_view text, CByteBuffer& bytes)
{
    constexpr int kRadix = 16;
    bytes.resize(static_cast<int>(text.size() / 2));
    for (int i = 0; i < bytes.getSize(); ++i) {
        const char* digits = text.data() + 2 * static_cast<std::ptrdiff_t>(i);
        if (std::from_chars(digits, digits + 2, bytes.data()[i], kRadix).ptr != digits + 2)
            return false;
    }
    return text.size() % 2 == 0;
}

} // namespace tsm
