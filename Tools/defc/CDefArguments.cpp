#include "Tools/defc/CDefArguments.h"

#include <cstddef>
#include <optional>

namespace tsm {

namespace {

struct CReference {
    std::size_t begin = 0;
    std::size_t end = 0; // behind the closing bracket; npos when there is none
    std::string name;
    std::optional<std::string> fallback;
};

std::optional<CReference> findReference(std::string_view text, std::size_t from)
{
    CReference found;
    found.begin = text.find("$(", from);
    if (found.begin == std::string_view::npos)
        return std::nullopt;
    const std::size_t close = text.find(')', found.begin);
    if (close == std::string_view::npos) {
        found.end = close;
        return found;
    }
    found.end = close + 1;
    const std::string_view inside = text.substr(found.begin + 2, close - found.begin - 2);
    const std::size_t mark = inside.find('?');
    found.name = inside.substr(0, mark);
    if (mark != std::string_view::npos)
        found.fallback = inside.substr(mark + 1);
    return found;
}

} // namespace

bool CDefArguments::expand(std::string_view text, std::string& out,
                           std::set<std::string>& missing) const
{
    out.clear();
    std::size_t from = 0;
    while (const std::optional<CReference> found = findReference(text, from)) {
        if (found->end == std::string_view::npos)
            return false;
        out += text.substr(from, found->begin - from);
        from = found->end;
        const auto value = values.find(found->name);
        if (found->name == "$")
            out += '$';
        else if (value != values.end())
            out += value->second;
        else if (found->fallback)
            out += *found->fallback;
        else
            missing.insert(found->name);
    }
    out += text.substr(from);
    return true;
}

void CDefArguments::collect(std::string_view text, std::set<std::string>& names)
{
    std::size_t from = 0;
    while (const std::optional<CReference> found = findReference(text, from)) {
        if (found->end == std::string_view::npos)
            return;
        from = found->end;
        if (found->name != "$")
            names.insert(found->name);
    }
}

std::string CDefArguments::escape(std::string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isStart = text.substr(i, 2) == "$(";
        out += isStart ? std::string("$($)") : std::string(1, text[i]);
    }
    return out;
}

} // namespace tsm
