#include "Tools/resc/CResourceManifest.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <sstream>
#include <system_error>

namespace tsm {

namespace {

constexpr std::string_view kSeparator = " = ";

} // namespace

bool CResourceManifest::parse(std::string_view text, const std::filesystem::path& path,
                              std::string& error)
{
    items.clear();
    std::istringstream in{std::string(text)};
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        std::string message;
        if (line.empty() || line.front() == '#' || addLine(line, path.parent_path(), message))
            continue;
        error = path.string() + ":" + std::to_string(number) + ": " + message;
        return false;
    }
    return true;
}

bool CResourceManifest::addLine(const std::string& line, const std::filesystem::path& folder,
                                std::string& message)
{
    const std::size_t middle = line.find(kSeparator);
    if (middle == std::string::npos || middle == 0 || middle + kSeparator.size() == line.size()) {
        message = "'name = file' expected";
        return false;
    }
    const CItem item{line.substr(0, middle), folder / line.substr(middle + kSeparator.size())};
    std::error_code code;
    const std::uintmax_t size = std::filesystem::file_size(item.file, code);
    if (code)
        message = "no file '" + item.file.string() + "'";
    else if (size > std::numeric_limits<std::uint32_t>::max())
        message = "file '" + item.file.string() + "' is too large";
    else if (std::any_of(items.begin(), items.end(),
                         [&item](const CItem& other) { return other.name == item.name; }))
        message = "resource '" + item.name + "' is listed twice";
    if (message.empty())
        items.push_back(item);
    return message.empty();
}

} // namespace tsm
