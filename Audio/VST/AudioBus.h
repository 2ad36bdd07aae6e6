#pragma once

#include "Audio/VST/Bus.h"
#include "Audio/VST/Interfaces/Speakers.h"

namespace Steinberg::Vst {

/// A bus of sound: as many channels as its arrangement has bits.
class AudioBus : public Bus {
public:
    AudioBus(const TChar* busName, BusType busType, uint32 busFlags, SpeakerArrangement speakers)
        : Bus(busName, busType, busFlags), arrangement(speakers)
    {
    }

    [[nodiscard]] SpeakerArrangement getArrangement() const { return arrangement; }
    void setArrangement(SpeakerArrangement speakers) { arrangement = speakers; }
    [[nodiscard]] int32 getChannelCount() const override
    {
        return SpeakerArr::getChannelCount(arrangement);
    }

private:
    SpeakerArrangement arrangement;
};

} // namespace Steinberg::Vst
