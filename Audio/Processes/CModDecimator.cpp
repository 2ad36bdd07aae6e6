#include "Audio/Processes/CModDecimator.h"

#include "Audio/CAudioBlockPool.h"

#include <cassert>

namespace tsm {

namespace {

void decimate(const double* __restrict in, double* __restrict out, int count) noexcept
{
    for (int i = 0; i < count; ++i)
        out[i] = in[2 * i];
}

} // namespace

void CModDecimator::reset()
{
    CAudioProcessBase::reset();
    for (CDSPModDelay& delay : delays)
        delay.reset();
}

void CModDecimator::update()
{
    if (!getInputsChanged())
        return;
    const bool isOdd = getInputLatency() % 2 != 0;
    makeDelays(isOdd, getPort(0).getChannelCount());
    publishChannels(0.5 * getSampleRate(), (getInputLatency() + (isOdd ? 1 : 0)) / 2);
}

void CModDecimator::makeDelays(bool isOdd, int channelCount)
{
    delays.clear();
    for (int i = 0; isOdd && i < channelCount; ++i) {
        delays.add(new CDSPModDelay(getPool()));
        delays[i].setDelay(1);
    }
}

void CModDecimator::process()
{
    if (!pull())
        return;
    const CAudioPort& port = getPort(0);
    const int length = getBlockLength();
    assert(length % 2 == 0 && "the samples of a raised rate come in pairs");
    for (int i = 0; i < port.getChannelCount(); ++i) {
        CAudioBlockRef source = port.getChannel(i).buffer;
        if (!delays.isEmpty()) {
            CAudioBlockRef delayed = getPool().take(length);
            delays[i].process(source.read(), delayed.write(), length);
            source = delayed;
        }
        CAudioBlockRef block = getPool().take(length / 2);
        decimate(source.read(), block.write(), length / 2);
        send(i, block, length / 2);
    }
    releaseInputs();
}

} // namespace tsm
