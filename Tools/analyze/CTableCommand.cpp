#include "Tools/analyze/CTableCommand.h"

#include "Tools/analyze/CMusicSlices.h"
#include "Tools/analyze/CReportFile.h"
#include "Tools/analyze/CSoundMeasure.h"
#include "Tools/analyze/CTextTable.h"
#include "Tools/analyze/CToneMeasure.h"

#include <cstdio>

namespace tsm {

namespace {

constexpr const char* kUnknown = "-";

std::string formatOptional(const std::optional<double>& value, int decimals)
{
    return value ? formatNumber(*value, decimals) : kUnknown;
}

std::string formatDistortion(const CSoundBuffer& sound, const std::optional<double>& musicSeconds)
{
    if (!musicSeconds)
        return kUnknown;
    const CSoundBuffer sine = steadySine(sound, *musicSeconds);
    if (sine.getFrameCount() == 0)
        return kUnknown;
    return formatNumber(100.0 * CToneMeasure::of(sine, kMusicSineHz).harmonicDistortion(), 4);
}

bool addFile(const CLabelledFile& file, const std::optional<double>& musicSeconds,
             CTextTable& table, std::string& error)
{
    CSoundBuffer sound;
    CReportFile report;
    if (!CSoundBuffer::read(file.path, sound, error))
        return false;
    // What stands beside somebody's own sound may be anything.
    std::string warning;
    if (!CReportFile::readBeside(file.path, report, warning))
        std::fprintf(stderr, "reelpath-analyze: no report: %s\n", warning.c_str());
    const CSoundMeasure measure = CSoundMeasure::of(sound);
    table.addRow({file.label, formatNumber(decibels(measure.peak), 2),
                  formatNumber(decibels(measure.rms), 2), formatNumber(measure.crestDb(), 2),
                  formatDistortion(sound, musicSeconds), formatOptional(report.latency, 0),
                  formatOptional(report.timesRealTime, 1)});
    return true;
}

} // namespace

bool runTableCommand(const CAnalyzeOptions& options, std::string& error)
{
    CTextTable table(
        {"setting", "peak dBFS", "RMS dBFS", "crest dB", "THD %", "latency", "x real time"});
    for (const CLabelledFile& file : options.files)
        if (!addFile(file, options.musicSeconds, table, error))
            return false;
    std::fputs(table.toText().c_str(), stdout);
    return true;
}

} // namespace tsm
