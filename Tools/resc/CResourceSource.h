#pragma once

#include "Tools/resc/CResourceManifest.h"

#include <string>
#include <vector>

namespace tsm {

/// Makes the two sources that put files into a program. The assembler takes the bytes in as they
/// are, since a compiler needs minutes and gigabytes for arrays of megabytes.
class CResourceSource {
public:
    using CItems = std::vector<CResourceManifest::CItem>;
    static constexpr const char* kTable = "kResourceTable"; // what the product's own is called

    /// The data blocks, for the GNU assembler behind the C preprocessor (`.S`).
    static std::string makeAssembly(const CItems& items, const std::string& table = kTable);

    /// The definition of the array `table` in our namespace, rows in the order of the items.
    static std::string makeTable(const CItems& items, const std::string& table = kTable);

private:
    static std::string quote(const std::string& text);
    static std::string symbolOf(const std::string& table, std::size_t index);
};

} // namespace tsm
