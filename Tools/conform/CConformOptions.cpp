#include "Tools/conform/CConformOptions.h"

#include "Tools/Support/CCommandLine.h"
#include "Tools/hostlib/CVstBundle.h"

#include <CLI/CLI.hpp>

namespace tsm {

namespace {

void describeAll(CLI::App& app, CConformOptions& options)
{
    app.add_option("--plugin", options.pluginPath, "Bundle to test")->capture_default_str();
    app.add_option("--class", options.className,
                   "Class of the bundle to test; the first that processes sound when left out");
    app.add_option("--only", options.pattern,
                   "Run the cases whose name has this piece, or matches this pattern with * or ?");
    app.add_option("--json", options.jsonPath, "Write the results to this file as well");
    app.add_option("--limit", options.limitSeconds, "Seconds that an ordinary case may take")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    app.add_option(
           "--loading", options.loading,
           "Title of a parameter whose change may load data, so that the heap isn't watched "
           "then (repeatable)")
        ->allow_extra_args(false);
    app.add_flag("--list", options.isListOnly, "List the cases and run none");
    app.add_flag("--quick", options.isQuick, "Repeat less where a case counts on repetition");
    app.footer("Exit status: 0 when no case fails, 1 when one does, 2 when the test can't be done");
}

} // namespace

CError* CConformOptions::parse(int argc, const char* const* argv, CConformOptions& options,
                               bool& isDone)
{
    options.pluginPath = CVstBundle::defaultPath().string();
    return parseCommandLine(
        argc, argv, "reelpath-conform", "Tests a VST 3 plug-in against what hosts rely on.",
        [&](CLI::App& app) { describeAll(app, options); }, isDone);
}

} // namespace tsm
