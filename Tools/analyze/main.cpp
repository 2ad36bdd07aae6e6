#include "Tools/analyze/CAnalyzeOptions.h"
#include "Tools/analyze/CCompareCommand.h"
#include "Tools/analyze/CSpectrumCommand.h"
#include "Tools/analyze/CTableCommand.h"

#include <cstdio>

namespace {

using namespace tsm;

bool run(const CAnalyzeOptions& options, std::string& error)
{
    switch (options.mode) {
    case EAnalyzeMode::Table:
        return runTableCommand(options, error);
    case EAnalyzeMode::Spectrum:
        return runSpectrumCommand(options, error);
    case EAnalyzeMode::Compare:
        return runCompareCommand(options, error);
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    CAnalyzeOptions options;
    if (const std::optional<int> status = CAnalyzeOptions::parse(argc, argv, options))
        return *status;
    std::string error;
    if (run(options, error)) {
        if (std::fflush(stdout) == 0)
            return 0;
        error = "standard output can't be written";
    }
    std::fprintf(stderr, "reelpath-analyze: %s\n", error.c_str());
    return 1;
}
