#include "Audio/Processes/CModOutput.h"

#include "Audio/CAudioEnv.h"

namespace tsm {

void CModOutput::update()
{
    if (getInputsChanged())
        getEnv().latency = getInputLatency();
}

void CModOutput::process()
{
    (void)pull(); // false leaves the channels without blocks, which says it all
}

} // namespace tsm
