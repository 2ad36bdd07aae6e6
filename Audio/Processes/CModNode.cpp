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
    if (!beginPull())
        return;
    CAudioPort& port = getPort(0);
    for (int i = 0; i < port.getChannelCount(); ++i)
        send(i, takeInput(port, i), getBlockLength());
}

} // namespace tsm
