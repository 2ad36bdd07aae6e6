#include "Tools/Support/CToolFile.h"
#include "Tools/defc/CDefCompiler.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace {

using namespace tsm;

struct COptions {
    std::vector<std::filesystem::path> includeFolders;
    std::filesystem::path input;
    std::filesystem::path output;
    std::filesystem::path dependencies;
    bool print = false;
};

bool complain(const std::string& message)
{
    std::fprintf(stderr, "%s\n", message.c_str());
    return false;
}

/// A blank in a path would end it in the rule; make and ninja both take a backslash for it.
std::string quoteForRule(const std::filesystem::path& path)
{
    std::string quoted;
    for (const char c : path.string())
        quoted += (c == ' ' || c == '#') ? std::string("\\") + c : std::string(1, c);
    return quoted;
}

bool writeDependencies(const COptions& options, const CDefCompiler& compiler)
{
    std::string rule = quoteForRule(options.output) + ":";
    for (const std::filesystem::path& file : compiler.getFiles())
        rule += " \\\n  " + quoteForRule(std::filesystem::absolute(file));
    std::string error;
    return CToolFile::write(options.dependencies, rule + "\n", error) || complain(error);
}

bool compile(const COptions& options)
{
    CDefCompiler compiler(options.includeFolders);
    std::string compiled;
    if (!compiler.compile(options.input, compiled)) {
        for (const std::string& line : compiler.getProblems().getLines())
            complain(line);
        std::error_code code;
        std::filesystem::remove(options.output, code); // an older result would pass for this one
        return false;
    }
    if (!options.dependencies.empty() && !writeDependencies(options, compiler))
        return false;
    std::string error;
    return CToolFile::write(options.output, compiled, error) || complain(error);
}

bool print(const COptions& options)
{
    std::string compiled;
    std::string xml;
    std::string error;
    if (!CToolFile::read(options.input, compiled, error))
        return complain(error);
    if (!CDefCompiler::print(compiled, xml, error))
        return complain(options.input.string() + ": " + error);
    std::fwrite(xml.data(), 1, xml.size(), stdout);
    return std::fflush(stdout) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    COptions options;
    CLI::App app("Compiles definition documents, and prints compiled ones");
    app.add_option("-I", options.includeFolders, "Folder to search for included files")
        ->allow_extra_args(false);
    app.add_flag("--print", options.print, "Print the compiled document IN as XML");
    app.add_option("--depfile", options.dependencies, "Write a make rule with all files read");
    app.add_option("IN", options.input, "Document to read")->required();
    app.add_option("OUT", options.output, "Compiled document to write");
    try {
        app.parse(argc, argv);
        if (options.print != options.output.empty())
            throw CLI::ValidationError("OUT", options.print ? "not used with --print" : "missing");
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }
    return (options.print ? print(options) : compile(options)) ? 0 : 1;
}
