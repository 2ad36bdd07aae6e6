#include "Tools/monitor/CMonitorOptions.h"

#include "Tools/Support/CSoundOptions.h"

#include <CLI/CLI.hpp>

namespace tsm {
namespace {

CError* splitSettings(const std::vector<std::string>& texts, std::vector<CNamedText>& settings)
{
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0)
            TSM_FAIL("'%1' behind --set is not of the form NAME=TEXT", CString::fromUtf8(text));
        settings.push_back({CString::fromUtf8(text.substr(0, equals)),
                            CString::fromUtf8(text.substr(equals + 1))});
    }
    return nullptr;
}

} // namespace

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
            app.add_option("--set", settings,
                           "NAME=TEXT: set a parameter before the first block, as in "
                           "modReelpath.recgain=6 (repeatable)")
                ->type_size(1)
                ->allow_extra_args(false);
            app.add_option("--do", options.scriptLines,
                           "One line of a script (repeatable); see --script")
                ->type_size(1)
                ->allow_extra_args(false);
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
    TSM_TRY(splitSettings(settings, options.settings));
    if (options.inPath.empty())
        TSM_FAIL("no input file given (see --help)");
    return nullptr;
}

} // namespace tsm
