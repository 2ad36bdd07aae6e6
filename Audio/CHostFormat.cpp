#include "Audio/CHostFormat.h"

#include "Audio/CAudioEnv.h"

#include <cassert>

namespace tsm {

bool CHostFormat::setSampleRate(double rate)
{
    assert(rate > 0.0);
    const CLockScope lock(env->lock);
    if (rate == env->sampleRate)
        return false;
    env->sampleRate = rate;
    isChanged = true;
    return true;
}

void CHostFormat::setInputs(const CHostLayout& mainBus, const CHostLayout& sidechainBus)
{
    if (mainBus == main && sidechainBus == sidechain)
        return;
    const CLockScope lock(env->lock);
    if (mainBus.channelCount != main.channelCount ||
        sidechainBus.channelCount != sidechain.channelCount)
        isChanged = true;
    main = mainBus;
    sidechain = sidechainBus;
}

void CHostFormat::setOutput(const CHostLayout& outputBus)
{
    if (outputBus == output)
        return;
    const CLockScope lock(env->lock);
    if (outputBus.channelCount != output.channelCount)
        isChanged = true;
    output = outputBus;
}

bool CHostFormat::take(int& inputCount, double& rate)
{
    if (!isChanged)
        return false;
    const CLockScope lock(env->lock);
    isChanged = false;
    inputCount = main.channelCount + sidechain.channelCount;
    rate = env->sampleRate;
    return true;
}

int CHostFormat::getMainCount() const
{
    const CLockScope lock(env->lock);
    return main.channelCount;
}

int CHostFormat::getSidechainCount() const
{
    const CLockScope lock(env->lock);
    return sidechain.channelCount;
}

int CHostFormat::getOutputCount() const
{
    const CLockScope lock(env->lock);
    return output.channelCount;
}

double CHostFormat::getSampleRate() const
{
    const CLockScope lock(env->lock);
    return env->sampleRate;
}

} // namespace tsm
