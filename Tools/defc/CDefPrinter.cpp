#include "Tools/defc/CDefPrinter.h"

#include "Tools/defc/CDefArguments.h"
#include "Tools/defc/CDefText.h"

namespace tsm {

std::string CDefPrinter::print(const CDefNode& root)
{
    CDefPrinter printer;
    printer.out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document>\n";
    printer.printChildren(root, 1);
    printer.out += "</document>\n";
    return printer.out;
}

void CDefPrinter::printChildren(const CDefNode& node, int depth)
{
    const std::string indent(static_cast<std::size_t>(2 * depth), ' ');
    bool isBehindText = depth == 1; // at the top, text is no object's content
    for (const CDefNode& child : node.children) {
        // Two texts in a row would be read back as one.
        const bool asText = !isBehindText && isPlainText(child);
        if (asText)
            out += indent + escape(child.attributes.front().value) + "\n";
        else
            printNode(child, depth);
        isBehindText = asText || depth == 1;
    }
}

void CDefPrinter::printNode(const CDefNode& node, int depth)
{
    const std::string indent(static_cast<std::size_t>(2 * depth), ' ');
    const std::string element = node.isTemplate ? "template" : node.tag;
    out += indent + "<" + element;
    if (!node.name.empty())
        printAttribute("name", node.name);
    if (node.isTemplate)
        printAttribute("class", node.tag);
    for (const CDefAttribute& attribute : node.attributes) {
        const bool isTaken =
            attribute.key == "name" || (node.isTemplate && attribute.key == "class");
        printAttribute((isTaken ? "attr:" : "") + attribute.key, attribute.value);
    }
    if (node.children.empty()) {
        out += "/>\n";
        return;
    }
    out += ">\n";
    printChildren(node, depth + 1);
    out += indent + "</" + element + ">\n";
}

void CDefPrinter::printAttribute(const std::string& key, const std::string& value)
{
    out += " " + key + "=\"" + escape(value) + "\"";
}

bool CDefPrinter::isPlainText(const CDefNode& node)
{
    if (node.tag != "content" || node.name != "content" || node.isTemplate ||
        !node.children.empty() || node.attributes.size() != 1)
        return false;
    const CDefAttribute& only = node.attributes.front();
    return only.key == "value" && !only.value.empty() &&
           CDefText::normalizeSpace(only.value) == only.value;
}

std::string CDefPrinter::escape(const std::string& text)
{
    std::string escaped;
    for (const char c : CDefArguments::escape(text)) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            escaped += "&#" + std::to_string(static_cast<int>(c)) + ";";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

} // namespace tsm
