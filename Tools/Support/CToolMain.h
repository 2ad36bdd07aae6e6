#pragma once

#include "Core/CError.h"

#include <functional>

namespace tsm {

/// The frame of a tool's main(): runs `work` while signals that end the program only set a mark,
/// and turns its error, which it deletes, into one line on standard error and the exit status 2. A
/// signal that came meanwhile then ends the program as whoever sent it expects.
[[nodiscard]] int runTool(const char* tool, const std::function<CError*()>& work);

/// The whole main() of a tool whose `Options` read the command line, and whose `Job` does what they
/// ask for.
template <class Options, class Job>
[[nodiscard]] int runToolJob(const char* tool, int argc, const char* const* argv)
{
    return runTool(tool, [&]() -> CError* {
        Options options;
        bool isDone = false;
        TSM_TRY(Options::parse(argc, argv, options, isDone));
        return isDone ? nullptr : Job(options).run();
    });
}

} // namespace tsm
