#include "Audio/CHostValues.h"

#include <algorithm>

namespace tsm {

namespace {

std::int32_t offlineMode(double sampleRate, std::int32_t level)
{
    constexpr double kLowRate = 72000.0;
    constexpr double kHighRate = 144000.0;
    constexpr std::int32_t kHighestMode = 3;
    if (sampleRate < kLowRate)
        ++level;
    else if (sampleRate >= kHighRate)
        --level;
    return std::clamp(level, 0, kHighestMode);
}

} // namespace

void CHostValues::setOffline(bool isOffline, double sampleRate, std::int32_t level,
                             std::int32_t autoRtMode)
{
    if (isOffline != offline) {
        offline = isOffline;
        params.hostOffline->setValue(0, 0, offline ? 1.0 : 0.0);
    }
    const std::int32_t mode = offline ? offlineMode(sampleRate, level) : autoRtMode - 1;
    if (mode != oversamplingMode) {
        oversamplingMode = mode;
        params.hostOversamplingMode->setValue(0, 0, mode);
    }
}

void CHostValues::setBPM(double bpm)
{
    if (!params.hostBPM || bpm == hostBPM)
        return;
    hostBPM = bpm;
    params.hostBPM->setValue(0, 0, bpm);
}

void CHostValues::setTrackName(const CString& name)
{
    // Held over both steps: two hosts' threads then don't write one after the other's question.
    const CAudioParamLock lock(*params.hostTrackName);
    if (params.hostTrackName->text(0, 0) != name)
        params.hostTrackName->setText(0, 0, name);
}

} // namespace tsm
