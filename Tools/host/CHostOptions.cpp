#include "Tools/host/CHostOptions.h"

#include "Tools/Support/CCommandLine.h"
#include "Tools/hostlib/CVstBundle.h"

#include <CLI/CLI.hpp>

namespace tsm {

namespace {

CLI::App* addCommand(CLI::App& app, CHostOptions& options, EHostCommand command, const char* name,
                     const char* help)
{
    CLI::App* const added = app.add_subcommand(name, help);
    added->callback([&options, command] { options.command = command; });
    // So that --plugin may stand behind the command as well.
    added->fallthrough();
    return added;
}

void describeRender(CLI::App& app, CHostOptions& options)
{
    options.describe(app,
                     "TITLE=TEXT: set a parameter before the first block, as in "
                     "\"Recording gain=6\" (repeatable)",
                     "TITLE=t:v,t:v,...: set a parameter at these seconds (repeatable)");
    app.add_option("--vstpreset", options.presetPath, "Load a .vstpreset file");
    app.add_option("--load-state", options.loadStatePath, "Load the bytes of a component's state");
    app.add_option("--preset", options.program, "Choose a program by its name");
    app.add_option("--program", options.programIndex, "Choose a program, counted from 0")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--save-state", options.saveStatePath,
                   "Write the bytes of the component's state at the end; without IN and OUT, "
                   "nothing else is done");
    app.add_flag("--threads", options.useControlThread,
                 "Set parameters, ask for texts and save the state on a second thread while the "
                 "sound runs; a test of the plug-in that spoils the sound");
}

void describeAll(CLI::App& app, CHostOptions& options)
{
    app.require_subcommand(1);
    app.add_option("--plugin", options.pluginPath, "Bundle to load")->capture_default_str();
    addCommand(app, options, EHostCommand::Info, "info", "Tell what the plug-in is");
    addCommand(app, options, EHostCommand::List, "list", "List every parameter with its texts");
    addCommand(app, options, EHostCommand::Programs, "programs", "List the programs");
    describeRender(*addCommand(app, options, EHostCommand::Render, "render",
                               "Send a sound file through the plug-in"),
                   options);
    addCommand(app, options, EHostCommand::ModuleInfo, "moduleinfo",
               "Write the bundle's moduleinfo.json")
        ->add_option("OUT", options.outPath, "File to write; standard output when left out");
}

CError* checkRender(const CHostOptions& options)
{
    if (!options.program.empty() && options.programIndex >= 0)
        TSM_FAIL("--preset and --program exclude each other");
    const bool isStateOnly =
        !options.saveStatePath.empty() && options.inPath.empty() && options.outPath.empty();
    return isStateOnly ? nullptr : options.checkFiles();
}

} // namespace

CError* CHostOptions::parse(int argc, const char* const* argv, CHostOptions& options, bool& isDone)
{
    options.pluginPath = CVstBundle::defaultPath().string();
    TSM_TRY(parseCommandLine(
        argc, argv, "reelpath-host", "Loads a VST 3 plug-in and sends sound through it.",
        [&](CLI::App& app) { describeAll(app, options); }, isDone));
    if (isDone)
        return nullptr;
    TSM_TRY(options.finish());
    return options.command == EHostCommand::Render ? checkRender(options) : nullptr;
}

} // namespace tsm
