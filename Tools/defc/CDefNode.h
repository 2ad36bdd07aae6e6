#pragma once

#include <string>
#include <vector>

namespace tsm {

/// Deepest nesting of nodes that a document may have. Reader, decoder and printer recurse once a
/// level, so that the limit also bounds their stack.
inline constexpr int kMaxDefDepth = 128;

/// Where in the authored text something stands; `line` counts from 1.
struct CDefPlace {
    std::string file;
    int line = 0;
};

/// One attribute; an empty value is a value.
struct CDefAttribute {
    std::string key;
    std::string value;
};

/// One node of a definition document, free of all authoring shortcuts.
struct CDefNode {
    std::string tag; // of a template: the class its instances are created with
    std::string name;
    bool isTemplate = false;
    std::vector<CDefAttribute> attributes;
    std::vector<CDefNode> children;
    CDefPlace place; // empty in a tree that came from compiled data
};

} // namespace tsm
