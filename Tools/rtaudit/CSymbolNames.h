#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsm {

/// The names of this program's own functions and variables by address, from its file's table of
/// symbols (Tool Interface Standard, "Executable and Linking Format", 1995).
class CSymbolNames {
public:
    /// Reads the table; nothing has a name if that fails.
    CSymbolNames();

    /// The name of what contains that address, without namespaces and arguments; empty if unknown.
    [[nodiscard]] std::string find(const void* address) const;

private:
    struct CSymbol {
        std::uint64_t begin;
        std::uint64_t size;
        std::string name;
    };
    void readTable(const std::string& file);

    std::uint64_t base = 0;
    std::vector<CSymbol> symbols;
};

} // namespace tsm
