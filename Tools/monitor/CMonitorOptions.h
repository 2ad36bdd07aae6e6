#pragma once

#include "Core/CError.h"
#include "Tools/Support/CNamedText.h"

#include <string>
#include <vector>

namespace tsm {

/// What the command line of reelpath-monitor asks for.
struct CMonitorOptions {
    std::string inPath;
    std::string csvPath;
    std::string plotPath;
    std::string scriptPath;
    std::vector<std::string> scriptLines;
    std::vector<CNamedText> settings;
    int blockSize = 512;
    double framesPerSecond = 30.0;
    bool isFast = false;
    bool showMessages = false;

    /// Reads the command line. `isDone` is set when a help text was asked for and has been written
    /// to standard output. Errors: unknown options, bad values, no sound file's name.
    [[nodiscard]] static CError* parse(int argc, const char* const* argv, CMonitorOptions& options,
                                       bool& isDone);
};

} // namespace tsm
