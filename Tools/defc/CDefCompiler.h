#pragma once

#include "Tools/defc/CDefProblems.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tsm {

/// The two directions of the tool, on whole documents.
class CDefCompiler {
public:
    explicit CDefCompiler(std::vector<std::filesystem::path> folders)
        : includeFolders(std::move(folders))
    {
    }

    /// Compiles the document at `path`. False when it has problems; `compiled` is then empty.
    bool compile(const std::filesystem::path& path, std::string& compiled);
    const CDefProblems& getProblems() const { return problems; }

    /// All files that the document was read from.
    const std::vector<std::filesystem::path>& getFiles() const { return files; }

    /// Prints a compiled document as XML. False, with `error` set, when it is damaged.
    static bool print(std::string_view compiled, std::string& xml, std::string& error);

private:
    std::vector<std::filesystem::path> includeFolders;
    CDefProblems problems;
    std::vector<std::filesystem::path> files;
};

} // namespace tsm
