#pragma once

#include "Tools/Support/CSoundOptions.h"

namespace tsm {

/// What the command line asks for.
struct CRenderOptions : CSoundOptions {
    bool isList = false;
    std::string program;        // a preset's name; empty for the one that an instance starts with
    std::string impulsePath;    // of a sound file; empty for the tape of the program
    bool isLinearPhase = false; // of the oversampling filters
    std::string loadStatePath;
    std::string saveStatePath;

    /// Reads the command line. `isDone` is set when a help text was asked for and has been written
    /// to standard output. Errors: unknown options, bad values, missing files' names.
    [[nodiscard]] static CError* parse(int argc, const char* const* argv, CRenderOptions& options,
                                       bool& isDone);
};

} // namespace tsm
