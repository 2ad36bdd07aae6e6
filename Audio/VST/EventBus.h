#pragma once

#include "Audio/VST/Bus.h"

namespace Steinberg::Vst {

/// A bus of events with a fixed count of channels.
class EventBus : public Bus {
public:
    EventBus(const TChar* busName, BusType busType, uint32 busFlags, int32 channels)
        : Bus(busName, busType, busFlags), channelCount(channels)
    {
    }

    [[nodiscard]] int32 getChannelCount() const override { return channelCount; }

private:
    int32 channelCount;
};

} // namespace Steinberg::Vst
