#pragma once

#include "Tools/Support/CSoundOptions.h"

#include <string>

namespace tsm {

enum class EHostCommand { None, Info, List, Programs, Render, ModuleInfo };

/// What the command line asks for.
struct CHostOptions : CSoundOptions {
    EHostCommand command = EHostCommand::None;
    std::string pluginPath; // of the bundle
    std::string program;    // by name; empty for none
    int programIndex = -1;  // -1 for none
    std::string loadStatePath;
    std::string saveStatePath;
    std::string presetPath; // of a .vstpreset file
    bool useControlThread = false;

    /// Reads the command line. `isDone` is set when a help text was asked for and has been written
    /// to standard output. Errors: unknown options, bad values, missing files' names.
    [[nodiscard]] static CError* parse(int argc, const char* const* argv, CHostOptions& options,
                                       bool& isDone);
};

} // namespace tsm
