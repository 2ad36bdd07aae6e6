#include "Tools/defc/CDefWriter.h"

namespace tsm {

namespace {

constexpr std::size_t kMaxStrings = 65536;
constexpr std::size_t kMaxCount = 65535;

void appendLittleEndian(std::string& out, std::size_t value, int byteCount)
{
    for (int i = 0; i < byteCount; ++i)
        out += static_cast<char>((value >> (8 * i)) & 0xff);
}

} // namespace

std::string CDefWriter::write(const CDefNode& root)
{
    writeString("", root.place);
    nodes.clear();
    writeNode(root);
    return makeHeader() + nodes;
}

std::string CDefWriter::makeHeader() const
{
    std::string offsets;
    std::string pool;
    for (const std::string* text : strings) {
        appendLittleEndian(offsets, 4 * strings.size() + pool.size(), 4);
        pool += *text;
        pool += '\0';
    }
    std::string header;
    appendLittleEndian(header, strings.size(), 4);
    appendLittleEndian(header, offsets.size() + pool.size(), 4);
    return header + offsets + pool;
}

void CDefWriter::writeNode(const CDefNode& node)
{
    if (!node.isTemplate) {
        writePlainNode(node.tag, node.name, node);
        return;
    }
    writeString("template", node.place);
    writeString(node.name, node.place);
    writeU8(1);
    writeString(node.tag, node.place);
    const std::size_t lengthAt = nodes.size();
    nodes.append(4, '\0');
    writePlainNode(node.tag, "", node);
    std::string length;
    appendLittleEndian(length, nodes.size() - lengthAt - 4, 4);
    nodes.replace(lengthAt, 4, length);
}

void CDefWriter::writePlainNode(const std::string& tag, const std::string& name,
                                const CDefNode& node)
{
    writeString(tag, node.place);
    writeString(name, node.place);
    writeU8(0);
    writeCount(node.attributes.size(), "attributes", node.place);
    for (const CDefAttribute& attribute : node.attributes) {
        writeString(attribute.key, node.place);
        writeString(attribute.value, node.place);
    }
    writeCount(node.children.size(), "children", node.place);
    for (const CDefNode& child : node.children)
        writeNode(child);
}

void CDefWriter::writeString(const std::string& text, const CDefPlace& place)
{
    const auto [found, isNew] = indices.emplace(text, strings.size());
    if (isNew)
        strings.push_back(&found->first);
    if (isNew && strings.size() == kMaxStrings + 1)
        problems.add(place, "more than " + std::to_string(kMaxStrings) +
                                " different strings in the document");
    writeU16(found->second);
}

void CDefWriter::writeCount(std::size_t count, const char* what, const CDefPlace& place)
{
    if (count > kMaxCount)
        problems.add(place, std::to_string(count) + " " + what + ", at most " +
                                std::to_string(kMaxCount) + " are possible");
    writeU16(count);
}

void CDefWriter::writeU8(unsigned value)
{
    nodes += static_cast<char>(value);
}

void CDefWriter::writeU16(std::size_t value)
{
    appendLittleEndian(nodes, value, 2);
}

} // namespace tsm
