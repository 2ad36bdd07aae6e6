#include "Tools/Support/CToolMain.h"

#include "Core/CPtr.h"
#include "Tools/Support/CStopSignal.h"

#include <csignal>
#include <iostream>

namespace tsm {

namespace {

constexpr int kFailureStatus = 2;

/// Writes what happened, on one line; where it was found helps no user.
void tell(const char* tool, const CError& error)
{
    std::string message = error.getMessage().toUtf8();
    for (char& c : message)
        if (c == '\n' || c == '\r')
            c = ' ';
    std::cerr << tool << ": " << message << '\n';
}

} // namespace

int runTool(const char* tool, const std::function<CError*()>& work)
{
    CPtr<CError> error;
    {
        const CStopSignal stopSignal;
        error = CPtr<CError>(work());
    }
    if (!error)
        return 0;
    tell(tool, *error);
    if (CStopSignal::getRaised() != 0)
        std::raise(CStopSignal::getRaised());
    return kFailureStatus;
}

} // namespace tsm
