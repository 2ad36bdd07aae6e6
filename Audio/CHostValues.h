#pragma once

#include "Audio/CWrapperParams.h"

#include <cstdint>

namespace tsm {

/// What the host tells of its own state, kept and passed on to the parameters when it changes.
class CHostValues : public CCheckedObject {
public:
    /// `bound` is borrowed. [setup]
    explicit CHostValues(const CWrapperParams& bound) noexcept : params(bound) {}

    /// The host bounces (`isOffline`) or plays. The oversampling mode (0 to 3, for 1X to 8X) that
    /// "Auto" stands for is `level` in a bounce, one more below 72 kHz and one less from 144 kHz
    /// on, so that the raised rates meet; when playing it is `autoRtMode` - 1.
    /// [control | audio]
    void setOffline(bool isOffline, double sampleRate, std::int32_t level, std::int32_t autoRtMode);
    /// Beats a minute. [control | audio]
    void setBPM(double bpm);
    /// [control]
    void setTrackName(const CString& name);

    [[nodiscard]] std::int32_t getOversamplingMode() const noexcept { return oversamplingMode; }

private:
    const CWrapperParams& params;
    bool offline = false;
    std::int32_t oversamplingMode = 0;
    double hostBPM = -1.0; // not told yet
};

} // namespace tsm
