#include "Tools/Support/CSoundOptions.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace tsm {

namespace {

void addRepeatable(CLI::App& app, const char* name, std::vector<std::string>& texts,
                   const char* help)
{
    // One value behind each mention, so that the files' names aren't taken for further ones.
    app.add_option(name, texts, help)->type_size(1)->allow_extra_args(false);
}

CError* splitNamedTexts(const std::vector<std::string>& texts, const char* option,
                        std::vector<CNamedText>& out)
{
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0)
            TSM_FAIL("'%1' behind %2 is not of the form NAME=TEXT", CString::fromUtf8(text),
                     option);
        out.push_back({CString::fromUtf8(std::string_view(text).substr(0, equals)),
                       CString::fromUtf8(std::string_view(text).substr(equals + 1))});
    }
    return nullptr;
}

ESampleFormat formatOfName(const std::string& name)
{
    for (const CSampleFormatRow& row : kSampleFormats)
        if (name == row.name)
            return row.format;
    return ESampleFormat::Float32;
}

/// The commands' helps as well: CLI asks the innermost one that was given.
void parse(CLI::App& app, int argc, const char* const* argv, bool& isDone)
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        isDone = true;
    }
}

} // namespace

void CSoundOptions::describe(CLI::App& app, const char* setHelp, const char* automateHelp)
{
    app.add_option("IN", inPath, "Sound file to process, mono or stereo");
    app.add_option("OUT", outPath, "WAV file to write");
    addRepeatable(app, "--set", rawSettings, setHelp);
    addRepeatable(app, "--automate", rawAutomations, automateHelp);
    app.add_option("--block", blockSize, "Samples of a host block, 1 to 65536")
        ->check(CLI::Range(1, kMaxBlock))
        ->capture_default_str();
    app.add_flag("--single", useFloatHost, "32-bit host samples in place of 64-bit ones");
    app.add_option("--format", formatName, "Samples of OUT: f64, f32, s24 or s16")
        ->check(CLI::IsMember({"f64", "f32", "s24", "s16"}))
        ->capture_default_str();
    app.add_flag("--raw", isRaw,
                 "The samples as they come for the input's length: neither aligned nor with the "
                 "tail");
    app.add_flag("--offline", isOffline, "Process as a host does when it bounces");
    app.add_flag("--json", isJson, "Write a report to standard output");
}

CError* CSoundOptions::finish()
{
    format = formatOfName(formatName);
    TSM_TRY(splitNamedTexts(rawSettings, "--set", settings));
    return splitNamedTexts(rawAutomations, "--automate", automations);
}

CError* CSoundOptions::checkFiles() const
{
    if (inPath.empty())
        TSM_FAIL("no input file given (see --help)");
    if (outPath.empty())
        TSM_FAIL("no output file given (see --help)");
    return nullptr;
}

CError* parseCommandLine(int argc, const char* const* argv, const char* tool, const char* purpose,
                         const std::function<void(CLI::App&)>& describe, bool& isDone)
{
    isDone = false;
    try {
        CLI::App app(purpose, tool);
        describe(app);
        parse(app, argc, argv, isDone);
    } catch (const std::exception& failure) {
        // The library reports by exceptions; this is its edge.
        TSM_FAIL("%1", CString::fromUtf8(failure.what()));
    }
    return nullptr;
}

} // namespace tsm
