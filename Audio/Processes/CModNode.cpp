#include "Audio/Processes/CModNode.h"

namespace tsm {

void CModNode::update()
{
    if (!getInputsChanged())
        return;
    const CAudioPort& port = getPort(0);
    CAudioFormat format;
    format.sampleRate = getSampleRate();
    for (int i = 0; i < port.getChannelCount(); ++i) {
        const CAudioChannel& channel = port.getChannel(i);
        format.add({channel.channel, channel.group, getInputLatency()});
    }
    publish(format);
}

void CModNode::process()
{
    if (!pull())
        return;
    const CAudioPort& port = getPort(0);
    for (int i = 0; i < port.getChannelCount(); ++i)
        send(i, port.getChannel(i).buffer, getBlockLength());
    releaseInputs();
}

} // namespace tsm
