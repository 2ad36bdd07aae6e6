#include "Tools/render/CRenderOptions.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace tsm {

namespace {

/// The texts as the library fills them, before they are looked into.
struct CRawTexts {
    std::vector<std::string> settings;
    std::vector<std::string> automations;
    std::string format = "f32";
};

void addRepeatable(CLI::App& app, const char* name, std::vector<std::string>& texts,
                   const char* help)
{
    // One value behind each mention, so that the files' names aren't taken for further ones.
    app.add_option(name, texts, help)->type_size(1)->allow_extra_args(false);
}

void describe(CLI::App& app, CRenderOptions& options, CRawTexts& raw)
{
    app.add_option("IN", options.inPath, "Sound file to process, mono or stereo");
    app.add_option("OUT", options.outPath, "WAV file to write");
    addRepeatable(app, "--set", raw.settings,
                  "NAME=TEXT: set a parameter before the first block, as in "
                  "modReelpath.recgain=6 or modReelpath.mode=F25 (repeatable)");
    addRepeatable(app, "--automate", raw.automations,
                  "NAME=t:v,t:v,...: set a numeric parameter at these seconds (repeatable)");
    app.add_option("--block", options.blockSize, "Samples of a host block, 1 to 65536")
        ->check(CLI::Range(1, CRenderOptions::kMaxBlock))
        ->capture_default_str();
    app.add_flag("--single", options.useFloatHost, "32-bit host samples in place of 64-bit ones");
    app.add_option("--format", raw.format, "Samples of OUT: f64, f32, s24 or s16")
        ->check(CLI::IsMember({"f64", "f32", "s24", "s16"}))
        ->capture_default_str();
    app.add_flag("--raw", options.isRaw,
                 "The engine's samples for the input's length: neither aligned nor with the tail");
    app.add_flag("--offline", options.isOffline, "Process as a host does when it bounces");
    app.add_flag("--list", options.isList, "List every parameter and end");
    app.add_flag("--json", options.isJson, "Write a report to standard output");
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

CError* checkFiles(const CRenderOptions& options)
{
    if (options.isList)
        return nullptr;
    if (options.inPath.empty())
        TSM_FAIL("no input file given (see --help)");
    if (options.outPath.empty())
        TSM_FAIL("no output file given (see --help)");
    return nullptr;
}

ESampleFormat formatOfName(const std::string& name)
{
    for (const CSampleFormatRow& row : kSampleFormats)
        if (name == row.name)
            return row.format;
    return ESampleFormat::Float32;
}

} // namespace

CError* CRenderOptions::parse(int argc, const char* const* argv, CRenderOptions& options,
                              bool& isDone)
{
    isDone = false;
    CRawTexts raw;
    try {
        CLI::App app("Sends a sound file through the Ferrit Reelpath engine.", "reelpath-render");
        describe(app, options, raw);
        try {
            app.parse(argc, argv);
        } catch (const CLI::CallForHelp&) {
            std::cout << app.help();
            isDone = true;
            return nullptr;
        }
    } catch (const std::exception& failure) {
        // The library reports by exceptions; this is its edge.
        TSM_FAIL("%1", CString::fromUtf8(failure.what()));
    }
    options.format = formatOfName(raw.format);
    TSM_TRY(splitNamedTexts(raw.settings, "--set", options.settings));
    TSM_TRY(splitNamedTexts(raw.automations, "--automate", options.automations));
    return checkFiles(options);
}

} // namespace tsm
