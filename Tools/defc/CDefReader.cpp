#include "Tools/defc/CDefReader.h"

#include "Tools/defc/CDefText.h"

#include <algorithm>
#include <sstream>
#include <system_error>
#include <utility>

namespace tsm {

namespace {

// In front of an attribute's key it keeps the authoring layer's hands off, so that an object can
// have an attribute called `name`.
constexpr std::string_view kPlainPrefix = "attr:";

bool isText(const pugi::xml_node& node)
{
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

void collectArguments(const pugi::xml_node& element, std::set<std::string>& names)
{
    CDefArguments::collect(element.value(), names);
    for (const pugi::xml_attribute& attribute : element.attributes())
        CDefArguments::collect(attribute.value(), names);
    for (const pugi::xml_node& child : element.children())
        collectArguments(child, names);
}

std::string inQuotes(std::string_view text)
{
    std::string result(1, '\'');
    result += text;
    result += '\'';
    return result;
}

std::vector<std::string> splitWords(const std::string& text)
{
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

} // namespace

/// One use of a fragment while it is expanded.
struct CDefReader::CUse {
    std::string fragment;
    CDefPlace place;
    CDefArguments arguments;
    pugi::xml_node element;
    CScope outer;
};

CDefReader::CDefReader(std::vector<std::filesystem::path> folders, CDefProblems& noted)
    : includeFolders(std::move(folders)), problems(noted)
{
}

CDefReader::~CDefReader() = default;

CDefNode CDefReader::readDocument(const std::filesystem::path& path)
{
    CDefNode root;
    root.place = CDefPlace{path.string(), 1};
    readFile(path, 0, root);
    return root;
}

void CDefReader::readFile(const std::filesystem::path& path, int depth, CDefNode& parent)
{
    std::error_code code;
    openFiles.push_back(std::filesystem::weakly_canonical(path, code));
    if (std::find(files.begin(), files.end(), path) == files.end())
        files.push_back(path);
    sources.push_back(std::make_unique<CDefSource>());
    const CDefSource& source = *sources.back();
    if (sources.back()->load(path, problems))
        readChildren(source.getRoot(), CScope{&source, nullptr, depth}, parent);
    openFiles.pop_back();
}

void CDefReader::readChildren(const pugi::xml_node& element, const CScope& scope, CDefNode& parent)
{
    // A comment splits text into several nodes that are one text to the author.
    std::string text;
    CDefPlace textPlace;
    for (const pugi::xml_node& child : element.children()) {
        if (isText(child)) {
            if (text.empty())
                textPlace = scope.source->placeOf(child);
            else
                text += ' ';
            text += child.value();
        } else if (child.type() == pugi::node_element) {
            addText(std::exchange(text, {}), textPlace, scope, parent);
            readElement(child, scope, parent);
        }
    }
    addText(text, textPlace, scope, parent);
}

void CDefReader::addText(const std::string& text, const CDefPlace& place, const CScope& scope,
                         CDefNode& parent)
{
    const std::string value = CDefText::normalizeSpace(expand(text, place, scope));
    if (value.empty())
        return;
    if (parent.tag.empty())
        note(place, scope, "text outside of any object");
    parent.children.push_back(CDefNode{"content", "content", false, {{"value", value}}, {}, place});
}

void CDefReader::readElement(const pugi::xml_node& element, const CScope& scope, CDefNode& parent)
{
    const std::string_view tag = element.name();
    if (tag == "include")
        readInclude(element, scope, parent);
    else if (tag == "defaults")
        readDefaults(element, scope);
    else if (tag == "fragment")
        readFragment(element, scope);
    else if (tag == "use")
        readUse(element, scope, parent);
    else if (tag == "children")
        readUseChildren(element, scope, parent);
    else if (tag == "template")
        readTemplate(element, scope, parent);
    else
        readObject(element, scope, parent);
}

void CDefReader::readObject(const pugi::xml_node& element, const CScope& scope, CDefNode& parent)
{
    CDefNode node;
    node.tag = element.name();
    node.attributes = readAttributes(element, scope);
    node.name = take(node.attributes, "name", element, scope, false);
    finishNode(element, scope, node, parent);
}

void CDefReader::readTemplate(const pugi::xml_node& element, const CScope& scope, CDefNode& parent)
{
    CDefNode node;
    node.isTemplate = true;
    node.attributes = readAttributes(element, scope);
    node.name = take(node.attributes, "name", element, scope, true);
    node.tag = take(node.attributes, "class", element, scope, true);
    finishNode(element, scope, node, parent);
}

void CDefReader::finishNode(const pugi::xml_node& element, const CScope& scope, CDefNode& node,
                            CDefNode& parent)
{
    node.place = scope.source->placeOf(element);
    unmaskKeys(node.attributes, element, scope);
    if (!node.tag.empty() && (!CDefText::isTag(node.tag) || CDefText::isReservedTag(node.tag)))
        note(node.place, scope, inQuotes(node.tag) + " is no tag of an object");
    for (const std::string& message : classes.complete(node))
        note(node.place, scope, message);
    if (!node.name.empty() && !CDefText::isName(node.name))
        note(node.place, scope,
             "name " + inQuotes(node.name) + " has characters that no path can hold");
    if (scope.depth >= kMaxDefDepth) {
        note(node.place, scope, "objects are nested too deeply");
        return;
    }
    readChildren(element, CScope{scope.source, scope.use, scope.depth + 1}, node);
    parent.children.push_back(std::move(node));
}

void CDefReader::readInclude(const pugi::xml_node& element, const CScope& scope, CDefNode& parent)
{
    std::vector<CDefAttribute> attributes = readAttributes(element, scope);
    const std::string file = take(attributes, "file", element, scope, true);
    refuseRest(attributes, element, scope);
    if (file.empty())
        return;
    const CDefPlace place = scope.source->placeOf(element);
    const std::optional<std::filesystem::path> path = findIncluded(file, scope);
    if (!path) {
        note(place, scope, "included file " + inQuotes(file) + " not found");
        return;
    }
    std::error_code code;
    const std::filesystem::path canonical = std::filesystem::weakly_canonical(*path, code);
    if (std::find(openFiles.begin(), openFiles.end(), canonical) != openFiles.end())
        note(place, scope, "file " + inQuotes(file) + " includes itself");
    else
        readFile(*path, scope.depth, parent);
}

std::optional<std::filesystem::path> CDefReader::findIncluded(const std::string& file,
                                                              const CScope& scope) const
{
    std::vector<std::filesystem::path> folders{scope.source->getPath().parent_path()};
    folders.insert(folders.end(), includeFolders.begin(), includeFolders.end());
    for (const std::filesystem::path& folder : folders) {
        std::error_code code;
        if (std::filesystem::is_regular_file(folder / file, code))
            return folder / file;
    }
    return std::nullopt;
}

bool CDefReader::isTopLevel(const pugi::xml_node& element, const CScope& scope)
{
    const bool isTop = element.parent() == scope.source->getRoot();
    if (!isTop)
        note(scope.source->placeOf(element), scope,
             inQuotes(element.name()) + " must stand directly below 'document'");
    return isTop;
}

void CDefReader::readDefaults(const pugi::xml_node& element, const CScope& scope)
{
    if (!isTopLevel(element, scope))
        return;
    std::vector<CDefAttribute> attributes = readAttributes(element, scope);
    const std::string tag = take(attributes, "for", element, scope, true);
    const std::string base = take(attributes, "base", element, scope, false);
    const std::string required = take(attributes, "required", element, scope, false);
    const std::string open = take(attributes, "open", element, scope, false);
    const std::string name = take(attributes, "name", element, scope, false);
    unmaskKeys(attributes, element, scope);

    const CDefPlace place = scope.source->placeOf(element);
    const CDefClass* known = classes.find(base);
    if (!base.empty() && !known)
        note(place, scope, "unknown base " + inQuotes(base));
    CDefClass declared = known ? *known : CDefClass{};
    declared.name = name;
    declared.isOpen = open == "true";
    for (const std::string& key : splitWords(required))
        declared.setSlot({key, "", true});
    for (const CDefAttribute& attribute : attributes)
        declared.setSlot({attribute.key, attribute.value, false});
    if (!classes.declare(tag, declared))
        note(place, scope, "defaults for " + inQuotes(tag) + " are declared twice");
}

void CDefReader::readFragment(const pugi::xml_node& element, const CScope& scope)
{
    if (!isTopLevel(element, scope))
        return;
    std::vector<CDefAttribute> attributes = readAttributes(element, scope);
    const std::string name = take(attributes, "name", element, scope, true);
    refuseRest(attributes, element, scope);
    CFragment fragment{scope.source, element, {}};
    for (const pugi::xml_node& child : element.children())
        collectArguments(child, fragment.arguments);
    if (!fragments.emplace(name, std::move(fragment)).second)
        note(scope.source->placeOf(element), scope,
             "fragment " + inQuotes(name) + " is declared twice");
}

void CDefReader::readUse(const pugi::xml_node& element, const CScope& scope, CDefNode& parent)
{
    std::vector<CDefAttribute> attributes = readAttributes(element, scope);
    CUse use;
    use.fragment = take(attributes, "fragment", element, scope, true);
    use.place = scope.source->placeOf(element);
    use.element = element;
    use.outer = scope;
    for (const CDefAttribute& attribute : attributes)
        use.arguments.set(attribute.key, attribute.value);

    const auto found = fragments.find(use.fragment);
    if (found == fragments.end()) {
        note(use.place, scope, "unknown fragment " + inQuotes(use.fragment));
        return;
    }
    if (checkUse(use, found->second, scope))
        readChildren(found->second.element, CScope{found->second.source, &use, scope.depth},
                     parent);
}

bool CDefReader::checkUse(const CUse& use, const CFragment& fragment, const CScope& scope)
{
    bool isGood = true;
    for (const auto& [name, value] : use.arguments.getValues()) {
        if (fragment.arguments.count(name) != 0)
            continue;
        note(use.place, scope,
             "fragment " + inQuotes(use.fragment) + " has no argument " + inQuotes(name));
        isGood = false;
    }
    for (const CUse* outer = scope.use; outer; outer = outer->outer.use) {
        if (outer->fragment != use.fragment)
            continue;
        note(use.place, scope, "fragment " + inQuotes(use.fragment) + " uses itself");
        return false;
    }
    return isGood;
}

void CDefReader::readUseChildren(const pugi::xml_node& element, const CScope& scope,
                                 CDefNode& parent)
{
    refuseRest(readAttributes(element, scope), element, scope);
    if (!scope.use) {
        note(scope.source->placeOf(element), scope, "'children' outside of a fragment");
        return;
    }
    CScope outer = scope.use->outer;
    outer.depth = scope.depth;
    readChildren(scope.use->element, outer, parent);
}

std::vector<CDefAttribute> CDefReader::readAttributes(const pugi::xml_node& element,
                                                      const CScope& scope)
{
    const CDefPlace place = scope.source->placeOf(element);
    std::vector<CDefAttribute> attributes;
    for (const pugi::xml_attribute& attribute : element.attributes()) {
        const std::string key = attribute.name();
        std::string_view plain = key;
        if (plain.starts_with(kPlainPrefix))
            plain.remove_prefix(kPlainPrefix.size());
        if (!CDefText::isKey(plain))
            note(place, scope, "bad attribute name " + inQuotes(key));
        const bool isTwice =
            std::any_of(attributes.begin(), attributes.end(),
                        [&key](const CDefAttribute& other) { return other.key == key; });
        if (isTwice)
            note(place, scope, "attribute " + inQuotes(key) + " stands twice");
        else
            attributes.push_back({key, expand(attribute.value(), place, scope)});
    }
    return attributes;
}

std::string CDefReader::take(std::vector<CDefAttribute>& attributes, const std::string& key,
                             const pugi::xml_node& element, const CScope& scope, bool isRequired)
{
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&key](const CDefAttribute& a) { return a.key == key; });
    std::string value;
    if (found != attributes.end()) {
        value = found->value;
        attributes.erase(found);
    }
    if (value.empty() && isRequired)
        note(scope.source->placeOf(element), scope,
             inQuotes(element.name()) + " needs the attribute " + inQuotes(key));
    return value;
}

void CDefReader::refuseRest(const std::vector<CDefAttribute>& rest, const pugi::xml_node& element,
                            const CScope& scope)
{
    for (const CDefAttribute& attribute : rest)
        note(scope.source->placeOf(element), scope,
             inQuotes(element.name()) + " has no attribute " + inQuotes(attribute.key));
}

void CDefReader::unmaskKeys(std::vector<CDefAttribute>& attributes, const pugi::xml_node& element,
                            const CScope& scope)
{
    std::set<std::string> seen;
    for (CDefAttribute& attribute : attributes) {
        if (attribute.key.starts_with(kPlainPrefix))
            attribute.key.erase(0, kPlainPrefix.size());
        if (!seen.insert(attribute.key).second)
            note(scope.source->placeOf(element), scope,
                 "attribute " + inQuotes(attribute.key) + " stands twice");
    }
}

std::string CDefReader::expand(const std::string& text, const CDefPlace& place, const CScope& scope)
{
    static const CDefArguments kNoArguments;
    std::string out;
    std::set<std::string> missing;
    const CDefArguments& arguments = scope.use ? scope.use->arguments : kNoArguments;
    if (!arguments.expand(text, out, missing))
        note(place, scope, "'$(' without its ')'");
    for (const std::string& name : missing)
        note(place, scope,
             scope.use ? "argument " + inQuotes(name) + " is missing"
                       : "argument " + inQuotes(name) + " outside of a fragment");
    // Character references can bring in what the check of the file's bytes keeps out.
    if (CDefText::findBad(out) != std::string::npos)
        note(place, scope, "character that no text may hold");
    return out;
}

void CDefReader::note(const CDefPlace& place, const CScope& scope, const std::string& message)
{
    std::string trail;
    for (const CUse* use = scope.use; use; use = use->outer.use)
        trail += " (in fragment '" + use->fragment + "', used at " + use->place.file + ":" +
                 std::to_string(use->place.line) + ")";
    problems.add(place, message + trail);
}

} // namespace tsm
