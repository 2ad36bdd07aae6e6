#include "Tools/Support/CMusicSections.h"
#include "Tools/music/CMusicMaker.h"

#include <cstdio>
#include <filesystem>
#include <string>

#include <CLI/CLI.hpp>

namespace {

using namespace tsm;

struct COptions {
    std::filesystem::path output;
    double seconds = kMusicSeconds;
    int rate = 44100;
    bool isSections = false;
};

void describe(CLI::App& app, COptions& options)
{
    app.add_option("OUT", options.output, "WAV file to write, 24 bits, stereo");
    app.add_option("--seconds", options.seconds, "Length; the sections keep their shares of it")
        ->check(CLI::Range(CMusicMaker::kMinSeconds, CMusicMaker::kMaxSeconds))
        ->capture_default_str();
    app.add_option("--rate", options.rate, "Samples a second")
        ->check(CLI::Range(CMusicMaker::kMinRate, CMusicMaker::kMaxRate))
        ->capture_default_str();
    app.add_flag("--sections", options.isSections,
                 "Print the sections as lines of name, start and end in seconds");
}

bool run(const COptions& options)
{
    if (options.isSections)
        for (const CMusicSection& section : musicSections(options.seconds))
            std::printf("%s %.3f %.3f\n", section.name, section.start, section.end);
    if (options.output.empty())
        return true;
    std::string error;
    if (CMusicMaker::make(options.seconds, options.rate).write(options.output, error))
        return true;
    std::fprintf(stderr, "reelpath-music: %s\n", error.c_str());
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    COptions options;
    CLI::App app(
        "Makes music to listen to an effect with: drums, bass, electric piano and a sine of "
        "1 kHz at -12 dBFS, each alone, then all but the sine together.");
    describe(app, options);
    try {
        app.parse(argc, argv);
        if (options.output.empty() && !options.isSections)
            throw CLI::RequiredError("OUT");
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }
    return run(options) ? 0 : 1;
}
