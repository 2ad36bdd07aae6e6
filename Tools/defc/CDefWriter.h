#pragma once

#include "Tools/defc/CDefNode.h"
#include "Tools/defc/CDefProblems.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace tsm {

/// Writes a tree in the compiled form that the program loads (Docs/definitions.md has its
/// layout). Equal trees give equal bytes: strings are numbered in the order of their first use,
/// behind the empty string, which is always number 0.
class CDefWriter {
public:
    /// `noted` must outlive the writer.
    explicit CDefWriter(CDefProblems& noted) : problems(noted) {}

    /// The compiled document; of no use when problems were noted: more than 65536 strings, or
    /// more than 65535 attributes or children on one node.
    std::string write(const CDefNode& root);

private:
    void writeNode(const CDefNode& node);
    void writePlainNode(const std::string& tag, const std::string& name, const CDefNode& node);
    void writeString(const std::string& text, const CDefPlace& place);
    void writeCount(std::size_t count, const char* what, const CDefPlace& place);
    void writeU8(unsigned value);
    void writeU16(std::size_t value);
    std::string makeHeader() const;

    CDefProblems& problems;
    std::unordered_map<std::string, std::size_t> indices;
    std::vector<const std::string*> strings; // keys of the map, which keep their place in memory
    std::string nodes;
};

} // namespace tsm
