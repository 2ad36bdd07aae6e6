#include "Tools/render/CRenderOptions.h"

#include "Tools/Support/CCommandLine.h"

#include <CLI/CLI.hpp>

namespace tsm {

CError* CRenderOptions::parse(int argc, const char* const* argv, CRenderOptions& options,
                              bool& isDone)
{
    TSM_TRY(parseCommandLine(
        argc, argv, "reelpath-render", "Sends a sound file through the Ferrit Reelpath engine.",
        [&](CLI::App& app) {
            options.describe(app,
                             "NAME=TEXT: set a parameter before the first block, as in "
                             "modReelpath.recgain=6 or modReelpath.mode=F25 (repeatable)",
                             "NAME=t:v,t:v,...: set a numeric parameter at these seconds "
                             "(repeatable)");
            app.add_option("--preset", options.program, "Choose a factory preset by its name");
            app.add_option("--impulse", options.impulsePath,
                           "Take a sound file in place of the tape's impulse");
            app.add_flag("--linear-phase", options.isLinearPhase,
                         "Oversample with filters of linear phase");
            app.add_option("--load-state", options.loadStatePath,
                           "Load the bytes of an instance's state");
            app.add_option("--save-state", options.saveStatePath,
                           "Write the bytes of the instance's state at the end");
            app.add_flag("--list", options.isList, "List every parameter and end");
        },
        isDone));
    if (isDone)
        return nullptr;
    TSM_TRY(options.finish());
    return options.isList ? nullptr : options.checkFiles();
}

} // namespace tsm
