#include "Tools/analyze/CTextTable.h"

#include <algorithm>
#include <cassert>
#include <cstdio>

namespace tsm {

namespace {

/// Characters shown: all bytes of UTF-8 but those that continue a character.
std::size_t widthOf(const std::string& text)
{
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80U; }));
}

std::string padding(const std::string& text, std::size_t width)
{
    return std::string(width - widthOf(text), ' ');
}

} // namespace

CTextTable::CTextTable(std::vector<std::string> heads)
{
    rows.push_back(std::move(heads));
}

void CTextTable::addRow(std::vector<std::string> cells)
{
    assert(cells.size() == rows.front().size());
    rows.push_back(std::move(cells));
}

std::string CTextTable::toText() const
{
    std::vector<std::size_t> widths(rows.front().size());
    for (const std::vector<std::string>& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    std::string text;
    std::size_t lineWidth = 0;
    for (const std::vector<std::string>& row : rows) {
        std::string line = row[0] + padding(row[0], widths[0]);
        for (std::size_t i = 1; i < row.size(); ++i)
            line += "  " + padding(row[i], widths[i]) + row[i];
        text += line + '\n';
        if (lineWidth == 0) {
            lineWidth = widthOf(line);
            text += std::string(lineWidth, '-') + '\n';
        }
    }
    return text;
}

std::string formatNumber(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

} // namespace tsm
