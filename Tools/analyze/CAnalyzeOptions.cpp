#include "Tools/analyze/CAnalyzeOptions.h"

#include <CLI/CLI.hpp>

namespace tsm {

namespace {

constexpr double kMostSeconds = 3600.0;

/// The texts as the library fills them, before they are looked into.
struct CRawTexts {
    std::vector<std::string> files;
    std::vector<std::string> pair;
    double musicSeconds = 0.0;
};

void addFiles(CLI::App& command, CRawTexts& raw)
{
    command.add_option("FILES", raw.files, "Sound files, each as LABEL=FILE")->required();
    command
        .add_option("--music-seconds", raw.musicSeconds,
                    "The files hold reelpath-music's sections of this length, from their start")
        ->check(CLI::Range(1.0, kMostSeconds));
}

void describe(CLI::App& app, CAnalyzeOptions& options, CRawTexts& raw)
{
    app.require_subcommand(1);
    CLI::App* table = app.add_subcommand(
        "table", "Print levels, the distortion of the sine section, and latency and speed from the "
                 "report beside each file (FILE with the extension json)");
    addFiles(*table, raw);
    table->callback([&options] { options.mode = EAnalyzeMode::Table; });

    CLI::App* spectrum = app.add_subcommand(
        "spectrum", "Write levels in bands of a sixth of an octave, a column a file (dBFS, where a "
                    "full-scale sine has -3); with --music-seconds, of the section where all play");
    spectrum->add_option("OUT", options.output, "Text file to write")->required();
    addFiles(*spectrum, raw);
    spectrum->add_flag("--harmonics", options.isHarmonics,
                       "Levels of harmonics 1 to 10 of the sine section instead");
    spectrum->callback([&options] { options.mode = EAnalyzeMode::Spectrum; });

    CLI::App* compare = app.add_subcommand("compare", "Print what is left of B without A");
    compare->add_option("A B", raw.pair, "Two sound files")->required()->expected(2);
    compare->add_option("--delay", options.delay, "Frames by which B is late");
    compare->callback([&options] { options.mode = EAnalyzeMode::Compare; });
}

void takeTexts(const CRawTexts& raw, CAnalyzeOptions& options)
{
    if (raw.musicSeconds > 0.0)
        options.musicSeconds = raw.musicSeconds;
    for (const std::string& text : raw.files) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0 || equals + 1 == text.size())
            throw CLI::ValidationError("FILES", "'" + text + "' is not of the form LABEL=FILE");
        options.files.push_back({text.substr(0, equals), text.substr(equals + 1)});
    }
    for (const std::string& path : raw.pair)
        options.files.push_back({path, path});
    if (options.isHarmonics && !options.musicSeconds)
        throw CLI::ValidationError("--harmonics", "needs --music-seconds");
}

} // namespace

std::optional<int> CAnalyzeOptions::parse(int argc, const char* const* argv,
                                          CAnalyzeOptions& options)
{
    CRawTexts raw;
    CLI::App app("Measures sound files before and after an effect.", "reelpath-analyze");
    describe(app, options, raw);
    try {
        app.parse(argc, argv);
        takeTexts(raw, options);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }
    return std::nullopt;
}

} // namespace tsm
