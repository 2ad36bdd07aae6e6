#include "Tools/rtaudit/CSymbolNames.h"

#include <cxxabi.h>
#include <elf.h>
#include <fstream>
#include <iterator>
#include <link.h>
#include <memory>

namespace tsm {
namespace {

/// "tsm::CClass::member(int)" becomes "CClass::member".
std::string shortName(const std::string& symbol)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), &std::free);
    std::string name = status == 0 ? text.get() : symbol;
    const std::string prefix = "tsm::";
    if (name.starts_with(prefix))
        name.erase(0, prefix.size());
    return name.substr(0, name.find('('));
}

/// A record at an offset of the file, or one of zeros where the file is too short.
template <class T>
T recordAt(const std::string& file, std::uint64_t offset)
{
    T record{};
    if (offset <= file.size() && file.size() - offset >= sizeof record)
        file.copy(reinterpret_cast<char*>(&record), sizeof record, offset);
    return record;
}

} // namespace

CSymbolNames::CSymbolNames()
{
    // The first object of the list is the program.
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* self) {
            static_cast<CSymbolNames*>(self)->base = info->dlpi_addr;
            return 1;
        },
        this);
    std::ifstream stream("/proc/self/exe", std::ios::binary);
    readTable(std::string(std::istreambuf_iterator<char>(stream), {}));
}

void CSymbolNames::readTable(const std::string& file)
{
    const auto header = recordAt<Elf64_Ehdr>(file, 0);
    for (unsigned i = 0; i < header.e_shnum; ++i) {
        const auto table = recordAt<Elf64_Shdr>(file, header.e_shoff + i * sizeof(Elf64_Shdr));
        if (table.sh_type != SHT_SYMTAB)
            continue;
        const auto names =
            recordAt<Elf64_Shdr>(file, header.e_shoff + table.sh_link * sizeof(Elf64_Shdr));
        for (std::uint64_t at = 0; at + sizeof(Elf64_Sym) <= table.sh_size;
             at += sizeof(Elf64_Sym)) {
            const auto symbol = recordAt<Elf64_Sym>(file, table.sh_offset + at);
            const std::uint64_t place = names.sh_offset + symbol.st_name;
            if (symbol.st_size > 0 && place < file.size())
                symbols.push_back({symbol.st_value, symbol.st_size, file.c_str() + place});
        }
    }
}

std::string CSymbolNames::find(const void* address) const
{
    const std::uint64_t place = reinterpret_cast<std::uintptr_t>(address) - base;
    for (const CSymbol& symbol : symbols)
        if (place >= symbol.begin && place - symbol.begin < symbol.size)
            return shortName(symbol.name);
    return {};
}

} // namespace tsm
