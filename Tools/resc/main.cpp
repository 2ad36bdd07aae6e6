#include "Tools/Support/CToolFile.h"
#include "Tools/resc/CResourceManifest.h"
#include "Tools/resc/CResourceSource.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include <CLI/CLI.hpp>

namespace {

using namespace tsm;

bool embed(const std::filesystem::path& manifestPath, const std::filesystem::path& base,
           const std::string& symbol, std::string& error)
{
    std::string text;
    CResourceManifest manifest;
    if (!CToolFile::read(manifestPath, text, error) || !manifest.parse(text, manifestPath, error))
        return false;
    std::filesystem::path assembly = base;
    std::filesystem::path table = base;
    assembly += ".S";
    table += ".cpp";
    return CToolFile::write(assembly, CResourceSource::makeAssembly(manifest.getItems(), symbol),
                            error) &&
           CToolFile::write(table, CResourceSource::makeTable(manifest.getItems(), symbol), error);
}

} // namespace

int main(int argc, char** argv)
{
    std::filesystem::path manifest;
    std::filesystem::path base;
    std::string symbol = CResourceSource::kTable;
    CLI::App app("Makes the sources that embed the files of a manifest into the program");
    app.add_option("MANIFEST", manifest, "Lines of the form 'resource name = file'")->required();
    app.add_option("OUT", base, "OUT.S and OUT.cpp are written")->required();
    app.add_option("--table", symbol,
                   "The name of the table of entries, for one beside the "
                   "product's");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }
    std::string error;
    if (embed(manifest, base, symbol, error))
        return 0;
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
}
