#pragma once

#include "Tools/conform/CCaseResult.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"

namespace tsm {

/// Runs cases, each in a child process, so that a plug-in that crashes or hangs fails one case and
/// leaves the report alone.
class CCaseRunner {
public:
    /// `limitSeconds` is that of an ordinary case.
    CCaseRunner(const CPlugin& subject, int limitSeconds) : plugin(subject), limit(limitSeconds) {}

    /// Errors: the system gives no process or pipe.
    [[nodiscard]] CError* run(const CConformCase& wanted, CCaseResult& result) const;

private:
    /// Descriptors that the child writes to.
    struct CChildEnds {
        int findings;
        int output;
        int errors;
    };
    [[noreturn]] void runChild(const CConformCase& wanted, const CChildEnds& out) const;

    const CPlugin& plugin;
    int limit;
};

} // namespace tsm
