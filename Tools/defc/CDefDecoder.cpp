#include "Tools/defc/CDefDecoder.h"

#include "Tools/defc/CDefText.h"

#include <algorithm>

namespace tsm {

namespace {

constexpr std::size_t kAttributeSize = 4;
constexpr std::size_t kMinNodeSize = 9;

} // namespace

bool CDefDecoder::decode(CDefNode& root)
{
    root = CDefNode{};
    return readStrings() && readRoot(root);
}

bool CDefDecoder::readStrings()
{
    std::size_t count = 0;
    std::size_t size = 0;
    if (!readNumber(4, count) || !readNumber(4, size))
        return false;
    const std::size_t begin = cursor;
    if (count == 0 || size > getLeft() || count > size / 4)
        return fail("the string table does not fit the data");
    const std::size_t end = begin + size;
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t offset = 0;
        if (!readNumber(4, offset))
            return false;
        if (offset < 4 * count || offset >= size)
            return fail("a string lies outside of the pool");
        if (!readStringAt(begin + offset, begin, end))
            return false;
    }
    cursor = end;
    return strings.front().empty() || fail("the first string is not empty");
}

bool CDefDecoder::readStringAt(std::size_t offset, std::size_t poolBegin, std::size_t poolEnd)
{
    const std::string_view rest = data.substr(offset, poolEnd - offset);
    const std::size_t length = rest.find('\0');
    if (length == std::string_view::npos)
        return fail("a string has no end");
    const std::string_view text = rest.substr(0, length);
    if (CDefText::findBad(text) != std::string_view::npos)
        return fail("the string at " + std::to_string(offset - poolBegin) + " is no valid text");
    strings.emplace_back(text);
    return true;
}

bool CDefDecoder::readRoot(CDefNode& root)
{
    if (!readNode(root, 0))
        return false;
    if (!root.tag.empty() || !root.name.empty() || root.isTemplate || !root.attributes.empty())
        return fail("the root has a tag, a name, a kind or attributes");
    return getLeft() == 0 || fail("data behind the root");
}

bool CDefDecoder::readNode(CDefNode& node, int depth)
{
    std::size_t kind = 0;
    if (!readString(node.tag) || !readString(node.name) || !readNumber(1, kind))
        return false;
    if (depth > kMaxDefDepth)
        return fail("nodes are nested too deeply");
    if (kind > 1)
        return fail("unknown kind of node");
    if (kind == 1 ? !readTemplate(node, depth) : !readContent(node, depth))
        return false;
    return depth == 0 || checkNode(node);
}

bool CDefDecoder::readTemplate(CDefNode& node, int depth)
{
    const std::string outerTag = node.tag;
    std::string bodyTag;
    std::string bodyName;
    std::size_t length = 0;
    std::size_t kind = 0;
    node.isTemplate = true;
    if (!readString(node.tag) || !readNumber(4, length))
        return false;
    const std::size_t left = getLeft();
    if (length > left)
        return fail("a template is longer than the data");
    if (!readString(bodyTag) || !readString(bodyName) || !readNumber(1, kind))
        return false;
    if (outerTag != "template" || bodyTag != node.tag || !bodyName.empty() || kind != 0)
        return fail("the body of template '" + node.name + "' does not fit it");
    if (!readContent(node, depth))
        return false;
    return left - getLeft() == length || fail("template '" + node.name + "' has a wrong length");
}

bool CDefDecoder::readContent(CDefNode& node, int depth)
{
    if (!readAttributes(node))
        return false;
    std::size_t count = 0;
    if (!readNumber(2, count))
        return false;
    if (count > getLeft() / kMinNodeSize)
        return fail("more children than the data can hold");
    for (std::size_t i = 0; i < count; ++i) {
        node.children.emplace_back();
        if (!readNode(node.children.back(), depth + 1))
            return false;
    }
    return true;
}

bool CDefDecoder::readAttributes(CDefNode& node)
{
    std::size_t count = 0;
    if (!readNumber(2, count))
        return false;
    if (count > getLeft() / kAttributeSize)
        return fail("more attributes than the data can hold");
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < count; ++i) {
        CDefAttribute attribute;
        if (!readString(attribute.key) || !readString(attribute.value))
            return false;
        if (!CDefText::isKey(attribute.key))
            return fail("'" + attribute.key + "' is no name of an attribute");
        keys.push_back(attribute.key);
        node.attributes.push_back(std::move(attribute));
    }
    std::sort(keys.begin(), keys.end());
    return std::adjacent_find(keys.begin(), keys.end()) == keys.end() ||
           fail("an attribute stands twice in one node");
}

bool CDefDecoder::checkNode(const CDefNode& node)
{
    if (!CDefText::isTag(node.tag) || CDefText::isReservedTag(node.tag))
        return fail("'" + node.tag + "' is no tag of an object");
    if (!node.name.empty() && !CDefText::isName(node.name))
        return fail("'" + node.name + "' is no name of an object");
    return !node.isTemplate || !node.name.empty() || fail("a template has no name");
}

bool CDefDecoder::readString(std::string& text)
{
    std::size_t index = 0;
    if (!readNumber(2, index))
        return false;
    if (index >= strings.size())
        return fail("no string " + std::to_string(index));
    text = strings[index];
    return true;
}

bool CDefDecoder::readNumber(int byteCount, std::size_t& value)
{
    const auto count = static_cast<std::size_t>(byteCount);
    if (getLeft() < count)
        return fail("the data ends too early");
    value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value |= static_cast<std::size_t>(static_cast<unsigned char>(data[cursor + i])) << (8 * i);
    cursor += count;
    return true;
}

bool CDefDecoder::fail(const std::string& message)
{
    error = "offset " + std::to_string(cursor) + ": " + message;
    return false;
}

} // namespace tsm
