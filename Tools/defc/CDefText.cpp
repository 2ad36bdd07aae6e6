#include "Tools/defc/CDefText.h"

#include <algorithm>
#include <array>

namespace tsm {

namespace {

constexpr std::array<std::string_view, 7> kReservedTags{
    "document", "include", "defaults", "fragment", "use", "children", "template"};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isWord(std::string_view text, std::string_view further)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [further](char c) {
        return isLetter(c) || isDigit(c) || further.find(c) != std::string_view::npos;
    });
}

/// Bytes of the character at the front of `text`, 0 if it may not stand in a document.
std::size_t measureChar(std::string_view text)
{
    const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = at(0);
    if (lead < 0x80)
        return lead >= 0x20 || isSpace(text[0]) ? 1 : 0;
    if (lead < 0xc2 || lead > 0xef)
        return 0;
    const std::size_t count = lead < 0xe0 ? 2 : 3;
    if (text.size() < count)
        return 0;
    for (std::size_t i = 1; i < count; ++i)
        if ((at(i) & 0xc0) != 0x80)
            return 0;
    const bool isOverlong = lead == 0xe0 && at(1) < 0xa0;
    const bool isSurrogate = lead == 0xed && at(1) >= 0xa0;
    return isOverlong || isSurrogate ? 0 : count;
}

} // namespace

std::size_t CDefText::findBad(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t count = measureChar(text.substr(i));
        if (count == 0)
            return i;
        i += count;
    }
    return std::string_view::npos;
}

std::string CDefText::normalizeSpace(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (!isSpace(c))
            out += c;
        else if (!out.empty() && out.back() != ' ')
            out += ' ';
    }
    if (!out.empty() && out.back() == ' ')
        out.pop_back();
    return out;
}

bool CDefText::isTag(std::string_view text)
{
    return isWord(text, "-_:") && isLetter(text.front()) && text.back() != ':';
}

bool CDefText::isName(std::string_view text)
{
    const std::size_t mark = text.find('#');
    if (mark == std::string_view::npos)
        return isWord(text, "-_:");
    const std::string_view index = text.substr(mark + 1);
    return isWord(text.substr(0, mark), "-_:") && !index.empty() &&
           std::all_of(index.begin(), index.end(), isDigit);
}

bool CDefText::isKey(std::string_view text)
{
    return isWord(text, "-_.") && (isLetter(text.front()) || text.front() == '_');
}

bool CDefText::isReservedTag(std::string_view text)
{
    return std::find(kReservedTags.begin(), kReservedTags.end(), text) != kReservedTags.end();
}

} // namespace tsm
