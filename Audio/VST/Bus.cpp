#include "Audio/VST/Bus.h"

#include "Audio/VST/VstText.h"

namespace Steinberg::Vst {

Bus::Bus(const TChar* busName, BusType busType, uint32 busFlags)
    : name(viewOf(busName, kString128Size - 1)), type(busType), flags(busFlags)
{
}

void Bus::getInfo(BusInfo& info) const
{
    info.channelCount = getChannelCount();
    copyText<TChar>(name, info.name);
    info.busType = type;
    info.flags = flags;
}

} // namespace Steinberg::Vst
