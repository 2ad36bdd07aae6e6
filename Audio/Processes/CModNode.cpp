#include "Audio/Processes/CModNode.h"

namespace tsm {

void CModNode::update()
{
    if (getInputsChanged())
        publishChannels(getSampleRate(), getInputLatency());
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
