#pragma once

#include "Tools/defc/CDefNode.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tsm {

/// Reads a compiled document back into a tree, and believes nothing: unlike the program, which
/// trusts what is built into it, this serves to look at files of any origin. What it accepts can
/// be printed as XML.
class CDefDecoder {
public:
    /// `compiled` must outlive the decoder.
    explicit CDefDecoder(std::string_view compiled) : data(compiled) {}

    /// False when the data is no compiled document; getError() tells why and where.
    bool decode(CDefNode& root);
    const std::string& getError() const { return error; }

private:
    bool readStrings();
    bool readStringAt(std::size_t offset, std::size_t poolBegin, std::size_t poolEnd);
    bool readRoot(CDefNode& root);
    bool readNode(CDefNode& node, int depth);
    bool readTemplate(CDefNode& node, int depth);
    bool readContent(CDefNode& node, int depth);
    bool readAttributes(CDefNode& node);
    bool checkNode(const CDefNode& node);

    bool readString(std::string& text);
    bool readNumber(int byteCount, std::size_t& value);
    std::size_t getLeft() const { return data.size() - cursor; }
    bool fail(const std::string& message);

    std::string_view data;
    std::size_t cursor = 0; // never above the data's size
    std::vector<std::string> strings;
    std::string error;
};

} // namespace tsm
