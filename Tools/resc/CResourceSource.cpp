#include "Tools/resc/CResourceSource.h"

namespace tsm {

std::string CResourceSource::makeAssembly(const CItems& items, const std::string& table)
{
    std::string out = ".section .rodata\n";
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string symbol = symbolOf(table, i);
        out += ".balign 16\n.globl " + symbol + "\n.hidden " + symbol + "\n" + symbol + ":\n";
        // The size is a difference of labels, so that it can't disagree with what is taken in.
        out += ".long 2f - 1f\n1:\n.incbin " + quote(items[i].file.string()) + "\n2:\n";
    }
    return out + ".section .note.GNU-stack,\"\",@progbits\n"; // the stack needs no execution
}

std::string CResourceSource::makeTable(const CItems& items, const std::string& table)
{
    std::string declarations;
    std::string rows;
    for (std::size_t i = 0; i < items.size(); ++i) {
        declarations += "extern \"C\" [[gnu::visibility(\"hidden\")]] const unsigned char " +
                        symbolOf(table, i) + "[];\n";
        rows += "    {" + symbolOf(table, i) + ", " + quote(items[i].name) + "},\n";
    }
    return "#include \"Core/CResourceEntry.h\"\n\n" + declarations +
           "\nnamespace tsm {\nextern const CResourceEntry " + table +
           "[];\n} // namespace tsm\n\nconst tsm::CResourceEntry tsm::" + table + "[] = {\n" +
           rows + "    {nullptr, nullptr},\n};\n";
}

std::string CResourceSource::quote(const std::string& text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted + "\"";
}

std::string CResourceSource::symbolOf(const std::string& table, std::size_t index)
{
    return "tsm_" + table + std::to_string(index);
}

} // namespace tsm
