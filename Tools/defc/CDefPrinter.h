#pragma once

#include "Tools/defc/CDefNode.h"

#include <string>

namespace tsm {

/// Prints a tree as XML that compiles to the same tree again: every attribute written out, and
/// nothing of the authoring layer but `template` and text content.
class CDefPrinter {
public:
    /// The whole document.
    static std::string print(const CDefNode& root);

private:
    void printChildren(const CDefNode& node, int depth);
    void printNode(const CDefNode& node, int depth);
    void printAttribute(const std::string& key, const std::string& value);
    static bool isPlainText(const CDefNode& node);
    static std::string escape(const std::string& text);

    std::string out;
};

} // namespace tsm
