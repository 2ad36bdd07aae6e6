#include "Tools/defc/CDefSource.h"

#include "Tools/Support/CToolFile.h"
#include "Tools/defc/CDefText.h"

#include <algorithm>

namespace tsm {

namespace {

std::vector<std::ptrdiff_t> findLineStarts(const std::string& text)
{
    std::vector<std::ptrdiff_t> starts{0};
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\n')
            starts.push_back(static_cast<std::ptrdiff_t>(i) + 1);
    return starts;
}

} // namespace

bool CDefSource::load(const std::filesystem::path& file, CDefProblems& problems)
{
    path = file;
    lineStarts = {0};
    std::string text;
    std::string error;
    if (!CToolFile::read(path, text, error)) {
        problems.add(placeAt(0), error);
        return false;
    }
    lineStarts = findLineStarts(text);
    const std::size_t bad = CDefText::findBad(text);
    if (bad != std::string_view::npos) {
        problems.add(placeAt(static_cast<std::ptrdiff_t>(bad)),
                     "character that is no UTF-8, a control character or above U+FFFF");
        return false;
    }
    return parse(text, problems) && checkRoot(problems);
}

bool CDefSource::parse(const std::string& text, CDefProblems& problems)
{
    const pugi::xml_parse_result result =
        document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!result)
        problems.add(placeAt(result.offset), result.description());
    return static_cast<bool>(result);
}

bool CDefSource::checkRoot(CDefProblems& problems) const
{
    const pugi::xml_node root = getRoot();
    std::string message;
    if (std::string_view(root.name()) != "document")
        message = "the root element must be 'document'";
    else if (root.first_attribute())
        message = "the root element takes no attributes";
    else if (root.next_sibling())
        message = "only one root element may stand in a file";
    if (!message.empty())
        problems.add(placeOf(root), message);
    return message.empty();
}

CDefPlace CDefSource::placeOf(const pugi::xml_node& node) const
{
    return placeAt(node.offset_debug());
}

CDefPlace CDefSource::placeAt(std::ptrdiff_t offset) const
{
    const auto next = std::upper_bound(lineStarts.begin(), lineStarts.end(), offset);
    return CDefPlace{path.string(), std::max(1, static_cast<int>(next - lineStarts.begin()))};
}

} // namespace tsm
