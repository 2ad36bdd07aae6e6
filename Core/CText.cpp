#include "Core/CText.h"

#include "Core/CRounding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tsm {

namespace {

constexpr int kMaxDecimals = 17;
constexpr std::array<double, kMaxDecimals + 1> kPowersOf10{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,
                                                           1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                           1e12, 1e13, 1e14, 1e15, 1e16, 1e17};

template <class T>
CString integerToString(T value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return CString(digits, static_cast<int>(end - digits));
}

// For values whose scaled digits leave 64 bits: all digits of the double itself, exactly.
CString toFixedHuge(double value, int decimals)
{
    char digits[384]; // the largest double has 309 digits in front of the point
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals)
            .ptr;
    return CString(digits, static_cast<int>(end - digits));
}

bool isBlank(std::uint16_t code)
{
    return code == ' ' || code == '\t' || code == '\r' || code == '\n';
}

int digitOf(std::uint16_t code)
{
    if (code >= '0' && code <= '9')
        return code - '0';
    if (code >= 'a' && code <= 'f')
        return code - 'a' + 10;
    if (code >= 'A' && code <= 'F')
        return code - 'A' + 10;
    return 16;
}

bool isDigit(std::uint16_t code)
{
    return code >= '0' && code <= '9';
}

// The base that the digits at `pos` are written in; steps over a "0x" that has digits behind it.
int takeBase(const CString& text, int& pos)
{
    if (text.at(pos) != '0')
        return 10;
    const std::uint16_t mark = text.at(pos + 1);
    if ((mark == 'x' || mark == 'X') && digitOf(text.at(pos + 2)) < 16) {
        pos += 2;
        return 16;
    }
    return 8;
}

// Reads an integer from the beginning and tells where it ended.
bool readInt(const CString& text, std::int32_t& out, int& pos)
{
    out = 0;
    pos = 0;
    const bool isNegative = text.at(0) == '-';
    if (isNegative || text.at(0) == '+')
        ++pos;
    if (!isDigit(text.at(pos)))
        return false;
    const int base = takeBase(text, pos);

    const std::int64_t limit = isNegative ? 0x80000000 : 0x7FFFFFFF;
    std::int64_t value = 0;
    for (; digitOf(text.at(pos)) < base; ++pos)
        value = std::min(value * base + digitOf(text.at(pos)), limit + 1);
    if (value > limit)
        return false;
    out = static_cast<std::int32_t>(isNegative ? -value : value);
    return true;
}

/// Brings a decimal number into the form "digits e exponent" that std::from_chars reads.
class CDecimalReader {
public:
    bool read(const CString& text)
    {
        const std::uint16_t sign = text.at(0);
        isNegative = sign == '-';
        int pos = isNegative || sign == '+' ? 1 : 0;
        const int start = pos;
        takeDigits(text, pos, 0);
        int digitsSeen = pos - start;
        if (text.at(pos) == '.' || text.at(pos) == ',') {
            const int fraction = ++pos;
            takeDigits(text, pos, -1);
            digitsSeen += pos - fraction;
        }
        return digitsSeen > 0 && takeExponent(text, pos) && pos == text.getLength();
    }

    // False when the number doesn't fit a finite double.
    bool convert(double& value)
    {
        value = 0.0;
        if (count == 0)
            return finish(value);
        if (wasCut)
            buffer[count++] = '1'; // tells "above the tie" from "the tie"
        exponent -= wasCut ? 1 : 0;
        // The number lies in [10^(order-1), 10^order).
        const std::int64_t order = exponent + count;
        if (order > 310)
            return false;
        if (order < -330)
            return finish(value);
        char* end = buffer + count;
        *end++ = 'e';
        end = std::to_chars(end, buffer + sizeof buffer, exponent).ptr;
        const auto result = std::from_chars(buffer, end, value);
        if (result.ec == std::errc::result_out_of_range) {
            value = 0.0;
            return order < 0 && finish(value); // too small is zero
        }
        return std::isfinite(value) && finish(value);
    }

private:
    // A double and its neighbour's midpoint have at most 768 significant digits.
    static constexpr int kMaxDigits = 800;
    static constexpr std::int64_t kMaxExponent = 1'000'000'000'000;

    bool finish(double& value) const
    {
        if (isNegative)
            value = -value;
        return true;
    }

    // `step` is what a digit adds to the exponent: 0 in front of the point, -1 behind it.
    void takeDigits(const CString& text, int& pos, int step)
    {
        for (; isDigit(text.at(pos)); ++pos) {
            const auto digit = static_cast<char>(text.at(pos));
            exponent += step;
            if (count == 0 && digit == '0')
                continue;
            if (count < kMaxDigits) {
                buffer[count++] = digit;
            } else {
                ++exponent;
                wasCut = wasCut || digit != '0';
            }
        }
    }

    bool takeExponent(const CString& text, int& pos)
    {
        if (text.at(pos) != 'e' && text.at(pos) != 'E')
            return true;
        ++pos;
        const bool isDown = text.at(pos) == '-';
        if (isDown || text.at(pos) == '+')
            ++pos;
        if (!isDigit(text.at(pos)))
            return false;
        std::int64_t value = 0;
        for (; isDigit(text.at(pos)); ++pos)
            value = std::min(value * 10 + (text.at(pos) - '0'), kMaxExponent);
        exponent += isDown ? -value : value;
        return true;
    }

    bool isNegative = false;
    bool wasCut = false; // digits other than 0 were left out
    int count = 0;
    std::int64_t exponent = 0;
    char buffer[kMaxDigits + 32];
};

} // namespace

CString toString(std::int64_t value)
{
    return integerToString(value);
}
CString toString(int value)
{
    return integerToString(value);
}
CString toString(std::uint32_t value)
{
    return integerToString(value);
}

CString toFixed(double value, int decimals)
{
    decimals = std::clamp(decimals, 0, kMaxDecimals);
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value > 0.0 ? "inf" : "-inf";

    const double scaled = roundHalfAway(value * kPowersOf10[static_cast<std::size_t>(decimals)]);
    if (std::abs(scaled) >= 0x1p63)
        return toFixedHuge(value, decimals);
    const bool isNegative = scaled < 0.0;
    auto rest = static_cast<std::uint64_t>(std::abs(scaled));

    char text[32];
    char* const end = text + sizeof text;
    char* begin = end;
    for (int place = 0; rest != 0 || place <= decimals; ++place) {
        if (place == decimals && decimals > 0)
            *--begin = '.';
        *--begin = static_cast<char>('0' + rest % 10);
        rest /= 10;
    }
    if (isNegative)
        *--begin = '-';
    return CString(begin, static_cast<int>(end - begin));
}

bool parseInt(const CString& text, std::int32_t& out) noexcept
{
    int end = 0;
    return readInt(text, out, end);
}

bool parseWholeInt(const CString& text, std::int32_t& out) noexcept
{
    int end = 0;
    if (readInt(text, out, end) && end == text.getLength())
        return true;
    out = 0;
    return false;
}

bool parseDouble(const CString& text, double& out) noexcept
{
    CDecimalReader reader;
    if (reader.read(text) && reader.convert(out))
        return true;
    out = 0.0;
    return false;
}

void splitText(const CString& text, std::uint16_t separator, COwnedArray<CString>& pieces)
{
    pieces.clear();
    for (int from = 0;;) {
        const int to = text.find(separator, from);
        text.substring(pieces.create(), from, to < 0 ? -1 : to - from);
        if (to < 0)
            return;
        from = to + 1;
    }
}

void splitWords(const CString& text, COwnedArray<CString>& words)
{
    words.clear();
    const int length = text.getLength();
    for (int from = 0; from < length;) {
        int to = from;
        while (to < length && !isBlank(text.at(to)))
            ++to;
        if (to > from)
            text.substring(words.create(), from, to - from);
        from = to + 1;
    }
}

CString toLowerCase(const CString& text)
{
    CString lower = text;
    for (int i = 0; i < lower.getLength(); ++i) {
        const std::uint16_t code = lower[i];
        const bool isLatinCapital = code >= 0xc0 && code <= 0xde && code != 0xd7;
        if ((code >= 'A' && code <= 'Z') || isLatinCapital)
            lower.setAt(i, static_cast<std::uint16_t>(code + 0x20));
    }
    return lower;
}

} // namespace tsm
