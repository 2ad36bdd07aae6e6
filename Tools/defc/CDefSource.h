#pragma once

#include "Tools/defc/CDefNode.h"
#include "Tools/defc/CDefProblems.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <pugixml.hpp>

namespace tsm {

/// One XML file of a document, parsed, with the line of each element.
class CDefSource {
public:
    /// Reads and parses the file. False, with the problems noted, when it cannot be read, holds
    /// characters that no document may hold, is no well-formed XML, or when its root is not
    /// `document` without attributes.
    bool load(const std::filesystem::path& file, CDefProblems& problems);

    const std::filesystem::path& getPath() const { return path; }
    pugi::xml_node getRoot() const { return document.document_element(); }
    CDefPlace placeOf(const pugi::xml_node& node) const;

private:
    bool parse(const std::string& text, CDefProblems& problems);
    bool checkRoot(CDefProblems& problems) const;
    CDefPlace placeAt(std::ptrdiff_t offset) const;

    std::filesystem::path path;
    pugi::xml_document document;
    std::vector<std::ptrdiff_t> lineStarts; // byte offsets, ascending, the first is 0
};

} // namespace tsm
