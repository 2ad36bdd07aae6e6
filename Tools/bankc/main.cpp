#include "Tools/bankc/CBankPrinter.h"
#include "Tools/bankc/CBankReader.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include <CLI/CLI.hpp>

namespace {

using namespace tsm;

struct COptions {
    std::filesystem::path definitions;
    std::filesystem::path input;
    std::filesystem::path output;
    bool print = false;
};

bool complain(const std::string& message)
{
    std::fprintf(stderr, "%s\n", message.c_str());
    return false;
}

bool succeed(CError* error, const std::filesystem::path& file)
{
    const CPtr<CError> owned(error);
    return !owned || complain(file.string() + ": " + owned->getMessage().toUtf8());
}

bool compile(const COptions& options, const CBankParams& params)
{
    CBankReader reader(params);
    CBankContent content;
    if (reader.read(options.input, content))
        return succeed(CBankFile::write(options.output, content), options.output);
    for (const std::string& line : reader.getProblems().getLines())
        complain(line);
    std::error_code code;
    std::filesystem::remove(options.output, code); // an older result would pass for this one
    return false;
}

bool print(const COptions& options, const CBankParams& params)
{
    CBankContent content;
    if (!succeed(CBankFile::read(options.input, content), options.input))
        return false;
    const std::string text = CBankPrinter(params).print(content);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return std::fflush(stdout) == 0;
}

bool run(const COptions& options)
{
    CBankParams params;
    if (!succeed(params.load(options.definitions), options.definitions))
        return false;
    return options.print ? print(options, params) : compile(options, params);
}

} // namespace

int main(int argc, char** argv)
{
    COptions options;
    CLI::App app("Compiles banks and lists of presets, and prints compiled ones");
    app.add_option("--definitions", options.definitions,
                   "Compiled definition document with the parameters")
        ->required();
    app.add_flag("--print", options.print,
                 "Print IN, a compiled bank, list or saved state, as text");
    app.add_option("IN", options.input, "File to read")->required();
    app.add_option("OUT", options.output, "Compiled file to write");
    try {
        app.parse(argc, argv);
        if (options.print != options.output.empty())
            throw CLI::ValidationError("OUT", options.print ? "not used with --print" : "missing");
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }
    return run(options) ? 0 : 1;
}
