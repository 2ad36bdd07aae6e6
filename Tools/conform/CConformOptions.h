#pragma once

#include "Core/CError.h"

#include <string>
#include <vector>

namespace tsm {

/// What the command line asks for.
struct CConformOptions {
    std::string pluginPath;           // of the bundle
    std::string className;            // empty for the first that processes sound
    std::string pattern;              // of cases; empty for all
    std::string jsonPath;             // empty for none
    std::vector<std::string> loading; // titles of parameters whose change may load data
    bool isListOnly = false;
    bool isQuick = false;
    int limitSeconds = 60;

    /// Reads the command line. `isDone` is set when a help text was asked for and has been written
    /// to standard output. Errors: unknown options, bad values.
    [[nodiscard]] static CError* parse(int argc, const char* const* argv, CConformOptions& options,
                                       bool& isDone);
};

} // namespace tsm
