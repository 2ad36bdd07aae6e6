#include "Audio/CAudioLink.h"

#include "Audio/CAudioPort.h"
#include "Core/CText.h"

namespace tsm {
namespace {

constexpr int kDelayBlockSize = 1024;
// A link's delays always fade over this time, whatever the processes around them are set to.
constexpr double kDelayFadeSeconds = 0.015;

} // namespace

void CAudioLink::publish(const CAudioFormat& newFormat)
{
    if (newFormat == format)
        return;
    format = newFormat;
    for (int i = format.channelCount; i < kMaxPortChannels; ++i)
        blocks[i].reset();
    destination.raiseInputChange();
}

void CAudioLink::clear() noexcept
{
    for (CAudioBlockRef& block : blocks)
        block.reset();
}

void CAudioLink::fitDelays(CAudioBlockPool& pool, int inputLatency)
{
    int used = 0;
    for (int i = 0; i < kMaxPortChannels; ++i) {
        channelDelays[i] = nullptr;
        if (i >= format.channelCount || format.channels[i].latency >= inputLatency)
            continue;
        CLinkDelay& slot = delays[used++];
        if (!slot.delay)
            slot.delay.reset(new CDSPModDelay(pool, kDelayBlockSize));
        else if (slot.channel != format.channels[i].channel)
            slot.delay->reset();
        slot.channel = format.channels[i].channel;
        slot.delay->setFadeLength(roundToInt(format.sampleRate * kDelayFadeSeconds));
        slot.delay->setDelay(inputLatency - format.channels[i].latency);
        channelDelays[i] = slot.delay.get();
    }
    for (; used < kMaxPortChannels; ++used)
        delays[used].delay.reset();
}

void CAudioLink::resetDelays()
{
    for (CLinkDelay& slot : delays)
        if (slot.delay)
            slot.delay->reset();
}

} // namespace tsm
