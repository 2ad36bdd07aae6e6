#include "Audio/CAudioLink.h"

#include "Audio/CAudioPort.h"
#include "Core/CRounding.h"

#include <algorithm>

namespace tsm {
namespace {

constexpr int kDelayBlockSize = 1024;

} // namespace

void CAudioLink::publish(const CAudioFormat& newFormat)
{
    if (newFormat == format)
        return;
    format = newFormat;
    isUsed = format.channelCount > 0;
    for (int i = format.channelCount; i < kMaxPortChannels; ++i)
        lanes[i].block.reset();
    destination.raiseInputChange();
}

void CAudioLink::clear() noexcept
{
    for (int i = 0; i < format.channelCount; ++i) // publish() clears the others
        lanes[i].block.reset();
}

void CAudioLink::endHere() noexcept
{
    end = nullptr;
    for (int i = 0; i < format.channelCount; ++i)
        lanes[i].hasPassed = true;
}

bool CAudioLink::hasDelay() const noexcept
{
    return std::ranges::any_of(lanes, [](const CLane& lane) { return lane.delay.get(); });
}

CAudioBlockRef CAudioLink::delayed(CLane& lane, CAudioBlockRef block, CAudioBlockPool& pool,
                                   int length, bool isFilledByInput)
{
    CDSPModDelay& delay = *lane.delay;
    if (delay.isFresh())
        delay.setFillValue(isFilledByInput ? block.read()[0] : 0.0);
    if (block.isSole()) {
        double* samples = block.write();
        delay.process(samples, samples, length);
    } else {
        CAudioBlockRef out = pool.take(length);
        delay.process(block.read(), out.write(), length);
        block = std::move(out);
    }
    if (delay.getDelay() == 0 && !delay.isFading())
        lane.delay.reset(); // faded out
    return block;
}

void CAudioLink::CLane::resetDelay()
{
    delay.reset();
    channel = 0;
    hasPassed = false;
}

void CAudioLink::fitDelays(CAudioBlockPool& pool, int inputLatency)
{
    if (delayRate != format.sampleRate)
        for (CLane& lane : lanes)
            lane.resetDelay();
    delayRate = format.sampleRate;
    for (int i = 0; i < kMaxPortChannels; ++i) {
        CLane& lane = lanes[i];
        if (i >= format.channelCount || lane.channel != format.channels[i].channel)
            lane.resetDelay();
        if (i >= format.channelCount)
            continue;
        lane.channel = format.channels[i].channel;
        fitDelay(pool, i, inputLatency - format.channels[i].latency);
    }
}

void CAudioLink::fitDelay(CAudioBlockPool& pool, int index, int wanted)
{
    CLane& lane = lanes[index];
    const bool isNew = !lane.delay;
    if (isNew && wanted == 0)
        return;
    if (isNew)
        lane.delay.reset(new CDSPModDelay(pool, kDelayBlockSize));
    lane.delay->setFadeLength(roundToInt(format.sampleRate * CDSPModDelay::kUsualFadeSeconds));
    if (isNew && lane.hasPassed)
        lane.delay->joinSignal(wanted);
    else
        lane.delay->setDelay(wanted);
    if (wanted == 0 && lane.delay->isFresh())
        lane.delay.reset();
}

void CAudioLink::resetDelays()
{
    clear();
    for (CLane& lane : lanes) {
        lane.hasPassed = false;
        if (lane.delay)
            lane.delay->reset();
        if (lane.delay && lane.delay->getDelay() == 0)
            lane.delay.reset();
    }
}

} // namespace tsm
