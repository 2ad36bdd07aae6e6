#include "Audio/Processes/CModInterpolator.h"

#include "Audio/CAudioBlockPool.h"

namespace tsm {

namespace {

void interpolate(const double* __restrict in, double* __restrict out, int count) noexcept
{
    for (int i = 0; i < count; ++i) {
        out[2 * i] = 2.0 * in[i];
        out[2 * i + 1] = 0.0;
    }
}

} // namespace

void CModInterpolator::update()
{
    if (getInputsChanged())
        publishChannels(2.0 * getSampleRate(), 2 * getInputLatency());
}

void CModInterpolator::process()
{
    if (!pull())
        return;
    const CAudioPort& port = getPort(0);
    const int length = getBlockLength();
    for (int i = 0; i < port.getChannelCount(); ++i) {
        CAudioBlockRef block = getPool().take(2 * length);
        interpolate(port.getChannel(i).buffer.read(), block.write(), length);
        block.markSparse();
        send(i, block, 2 * length);
    }
    releaseInputs();
}

} // namespace tsm
