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

CAudioBlockRef CAudioLink::takeInTime(int index, CAudioBlockPool& pool, int length,
                                      bool isFilledByInput)
{
    CAudioBlockRef block = take(index);
    // A block of another length comes from a part of the graph that runs at another rate.
    if (!block || blockLength != length)
        return {};
    CLinkDelay& slot = delays[index];
    slot.hasPassed = true;
    slot.channel = format.channels[index].channel;
    if (!slot.delay)
        return block;

    CDSPModDelay& delay = *slot.delay;
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
        slot.delay.reset(); // faded out
    return block;
}

void CAudioLink::fitDelays(CAudioBlockPool& pool, int inputLatency)
{
    if (delayRate != format.sampleRate)
        for (CLinkDelay& slot : delays)
            slot = CLinkDelay();
    delayRate = format.sampleRate;
    for (int i = 0; i < kMaxPortChannels; ++i) {
        CLinkDelay& slot = delays[i];
        if (i >= format.channelCount || slot.channel != format.channels[i].channel)
            slot = CLinkDelay();
        if (i >= format.channelCount)
            continue;
        slot.channel = format.channels[i].channel;
        fitDelay(pool, i, inputLatency - format.channels[i].latency);
    }
}

void CAudioLink::fitDelay(CAudioBlockPool& pool, int index, int wanted)
{
    CLinkDelay& slot = delays[index];
    const bool isNew = !slot.delay;
    if (isNew && wanted == 0)
        return;
    if (isNew)
        slot.delay.reset(new CDSPModDelay(pool, kDelayBlockSize));
    slot.delay->setFadeLength(roundToInt(format.sampleRate * kDelayFadeSeconds));
    if (isNew && slot.hasPassed)
        slot.delay->joinSignal(wanted);
    else
        slot.delay->setDelay(wanted);
    if (wanted == 0 && slot.delay->isFresh())
        slot.delay.reset();
}

void CAudioLink::resetDelays()
{
    clear();
    for (CLinkDelay& slot : delays) {
        slot.hasPassed = false;
        if (slot.delay)
            slot.delay->reset();
        if (slot.delay && slot.delay->getDelay() == 0)
            slot.delay.reset();
    }
}

} // namespace tsm
