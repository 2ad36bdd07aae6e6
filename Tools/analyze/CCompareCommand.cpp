#include "Tools/analyze/CCompareCommand.h"

#include "Tools/analyze/CSoundDifference.h"
#include "Tools/analyze/CTextTable.h"

#include <cstdio>

namespace tsm {

namespace {

void print(const CSoundDifference& difference)
{
    const auto level = [](double amplitude) { return formatNumber(decibels(amplitude), 2); };
    std::printf("null depth: peak %s dBFS, RMS %s dBFS\n", level(difference.rest.peak).c_str(),
                level(difference.rest.rms).c_str());
    std::printf("first file: peak %s dBFS, RMS %s dBFS\n", level(difference.first.peak).c_str(),
                level(difference.first.rms).c_str());
    std::printf("compared:   %zu frames; %zu more in one of the files\n", difference.frames,
                difference.unpaired);
}

} // namespace

bool runCompareCommand(const CAnalyzeOptions& options, std::string& error)
{
    CSoundBuffer a;
    CSoundBuffer b;
    CSoundDifference difference;
    if (!CSoundBuffer::read(options.files[0].path, a, error) ||
        !CSoundBuffer::read(options.files[1].path, b, error) ||
        !CSoundDifference::of(a, b, options.delay, difference, error))
        return false;
    print(difference);
    return true;
}

} // namespace tsm
