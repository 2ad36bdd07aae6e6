#include "Core/CUtf8.h"

#include <cstring>

namespace tsm {

namespace {

// The length of the sequence that `lead` begins; 0 for a byte of no kind.
int sequenceLength(std::uint8_t lead)
{
    if (lead < 0x80)
        return 1;
    if (lead < 0xC0 || lead > 0xF7)
        return 0;
    return lead < 0xE0 ? 2 : (lead < 0xF0 ? 3 : 4);
}

} // namespace

CUtf8Reader::CUtf8Reader(const char* bytes, std::int64_t count) noexcept
    : at(reinterpret_cast<const std::uint8_t*>(bytes)), end(at + count)
{
}

bool CUtf8Reader::next(std::uint32_t& value) noexcept
{
    while (at < end) {
        const int length = sequenceLength(*at);
        if (length == 0) {
            ++at;
            continue;
        }
        if (end - at < length)
            return false;
        // 7, 5, 4 or 3 bits of the leading byte count.
        value = length == 1 ? *at : *at & (0x7Fu >> length);
        for (int i = 1; i < length; ++i)
            value = value << 6 | (at[i] & 0x3Fu);
        if (value == 0)
            return false;
        at += length;
        if ((value & 0xFFFF) != 0)
            return true;
    }
    return false;
}

std::int64_t plainPrefix(const char* bytes, std::int64_t count) noexcept
{
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    constexpr std::uint64_t kTops = 0x8080808080808080;
    std::int64_t plain = 0;
    for (; plain + 8 <= count; plain += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, bytes + plain, sizeof eight);
        // The subtraction sets the top bit of a zero byte, and of others only behind a zero byte.
        if (((eight | (eight - kOnes)) & kTops) != 0)
            break;
    }
    while (plain < count && 0 < static_cast<signed char>(bytes[plain]))
        ++plain;
    return plain;
}

void appendUtf8(std::string& bytes, std::uint16_t code)
{
    const auto add = [&bytes](unsigned byte) { bytes.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        add(code);
    } else if (code < 0x800) {
        add(0xC0u | code >> 6);
        add(0x80u | (code & 0x3Fu));
    } else if (code < 0xD800 || code > 0xDFFF) {
        add(0xE0u | code >> 12);
        add(0x80u | (code >> 6 & 0x3Fu));
        add(0x80u | (code & 0x3Fu));
    }
}

} // namespace tsm
