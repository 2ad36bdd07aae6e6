#include "Tools/Support/CSoundOptions.h"

#include "Tools/Support/CCommandLine.h"

#include <CLI/CLI.hpp>

namespace tsm {

namespace {

ESampleFormat formatOfName(const std::string& name)
{
    for (const CSampleFormatRow& row : kSampleFormats)
        if (name == row.name)
            return row.format;
    return ESampleFormat::Float32;
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

} // namespace tsm
