#include "Tools/render/CRenderJob.h"
#include "Tools/render/CStopSignal.h"

#include <csignal>
#include <iostream>

namespace {

constexpr int kFailureStatus = 2;

/// Writes what happened, on one line; where it was found helps no user.
int fail(tsm::CError* error)
{
    const tsm::CPtr<tsm::CError> owned(error);
    std::string message = owned->getMessage().toUtf8();
    for (char& c : message)
        if (c == '\n' || c == '\r')
            c = ' ';
    std::cerr << "reelpath-render: " << message << '\n';
    return kFailureStatus;
}

} // namespace

int main(int argc, char** argv)
{
    tsm::CRenderOptions options;
    bool isDone = false;
    if (tsm::CError* error = tsm::CRenderOptions::parse(argc, argv, options, isDone))
        return fail(error);
    if (isDone)
        return 0;

    tsm::CError* error = nullptr;
    {
        const tsm::CStopSignal stopSignal;
        tsm::CRenderJob job(options);
        error = job.run();
    }
    const int status = error ? fail(error) : 0;
    // Whoever sent the signal sees that the program ended by it.
    if (error && tsm::CStopSignal::getRaised() != 0)
        std::raise(tsm::CStopSignal::getRaised());
    return status;
}
