#pragma once

#include "Audio/CAudioVizData.h"

namespace tsm {

/// A level of one channel, as a meter shows it.
class CAudioVizDataMeter : public CAudioVizData {
public:
    CAudioVizDataMeter() noexcept : CAudioVizData(EAudioVizType::Meter) {}

    [[nodiscard]] CError* write(COutputStream& stream) const override;
    /// Errors: the base's, values that aren't finite. [any]
    [[nodiscard]] CError* read(CInputStream& stream) override;

    static constexpr int kBodyBytes = kBaseBodyBytes + 16;

    double rms = 0.0; // linear; what a kind of meter puts here is told by `CLevelMeter`
    double peak = 0.0;
};

} // namespace tsm
