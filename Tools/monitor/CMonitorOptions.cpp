#include "Tools/monitor/CMonitorOptions.h"

#include "Tools/Support/CCommandLine.h"
#include "Tools/Support/CSoundOptions.h"

#include <CLI/CLI.hpp>

namespace tsm {

CError* CMonitorOptions::parse(int argc, const char* const* argv, CMonitorOptions& options,
                               bool& isDone)
{
    std::vector<std::string> settings;
    TSM_TRY(parseCommandLine(
        argc, argv, "reelpath-monitor",
        "Plays a sound file through the Ferrit Reelpath engine, to nowhere, and shows its meters, "
        "parameters and history as a window would.",
        [&](CLI::App& app) {
            app.add_option("IN", options.inPath, "Sound file to process, mono or stereo");
            addRepeatable(app, "--set", settings,
                          "NAME=TEXT: set a parameter before the first block, as in "
                          "modReelpath.recgain=6 (repeatable)");
            addRepeatable(app, "--do", options.scriptLines,
                          "One line of a script (repeatable); see --script");
            app.add_option("--script", options.scriptPath,
                           "File of edits, one a line: SECONDS set NAME TEXT, gesture NAME TEXT "
                           "TEXT..., reset NAME, undo, redo, preset NAME, program NUMBER, ab, "
                           "ab-copy");
            app.add_option("--fps", options.framesPerSecond,
                           "Frames a second: how often the meters are asked")
                ->check(CLI::Range(1.0, 100.0))
                ->capture_default_str();
            app.add_option("--block", options.blockSize, "Samples of a host block, 1 to 65536")
                ->check(CLI::Range(1, CSoundOptions::kMaxBlock))
                ->capture_default_str();
            app.add_flag("--fast", options.isFast,
                         "As fast as it can, with the frames at the sound's own time");
            app.add_option("--csv", options.csvPath, "Write what the meters sent as a table");
            app.add_option("--plot", options.plotPath, "Draw what the meters sent as a PNG file");
            app.add_flag("--messages", options.showMessages,
                         "Write the messages between client and instance to standard output");
        },
        isDone));
    if (isDone)
        return nullptr;
    TSM_TRY(splitNamedTexts(settings, "--set", options.settings));
    if (options.inPath.empty())
        TSM_FAIL("no input file given (see --help)");
    return nullptr;
}

} // namespace tsm
