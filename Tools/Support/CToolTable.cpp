#include "Tools/Support/CToolTable.h"

#include <algorithm>
#include <cstddef>

namespace tsm {

namespace {

std::string padded(const CString& text, int width)
{
    const int missing = std::max(width - text.getLength(), 0);
    return text.toUtf8() + std::string(static_cast<std::size_t>(missing), ' ');
}

std::vector<int> widthsOf(const std::vector<CToolRow>& rows)
{
    std::vector<int> widths;
    for (const CToolRow& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].getLength());
    }
    return widths;
}

} // namespace

std::string layOutTable(const std::vector<CToolRow>& rows)
{
    const std::vector<int> widths = widthsOf(rows);
    std::string table;
    for (const CToolRow& row : rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column)
            line += padded(row[column], widths[column]) + "  ";
        line.erase(line.find_last_not_of(' ') + 1);
        table += line + "\n";
    }
    return table;
}

} // namespace tsm
