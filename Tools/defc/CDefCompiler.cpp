#include "Tools/defc/CDefCompiler.h"

#include "Tools/defc/CDefDecoder.h"
#include "Tools/defc/CDefPrinter.h"
#include "Tools/defc/CDefReader.h"
#include "Tools/defc/CDefWriter.h"

namespace tsm {

bool CDefCompiler::compile(const std::filesystem::path& path, std::string& compiled)
{
    problems = CDefProblems{};
    CDefReader reader(includeFolders, problems);
    const CDefNode root = reader.readDocument(path);
    files = reader.getFiles();
    compiled = CDefWriter(problems).write(root);
    if (!problems.isEmpty())
        compiled.clear();
    return problems.isEmpty();
}

bool CDefCompiler::print(std::string_view compiled, std::string& xml, std::string& error)
{
    CDefDecoder decoder(compiled);
    CDefNode root;
    if (!decoder.decode(root)) {
        error = decoder.getError();
        return false;
    }
    xml = CDefPrinter::print(root);
    return true;
}

} // namespace tsm
