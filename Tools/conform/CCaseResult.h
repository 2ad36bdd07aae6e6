#pragma once

#include "Tools/conform/CFindings.h"

#include <vector>

namespace tsm {

/// What came of one case.
struct CCaseResult {
    enum class EVerdict { Pass, Fail, Skip };

    std::string name;
    EVerdict verdict = EVerdict::Pass;
    std::vector<CFinding> failures;
    std::vector<std::string> notes;  // of a skip: its reason
    std::vector<std::string> output; // the last lines that the plug-in's process wrote, on failure
    double seconds = 0.0;
};

} // namespace tsm
