#include "Audio/Processes/CModGainModule.h"

#include "Audio/CAudioBlockPool.h"

#include <cmath>
#include <limits>

namespace tsm {

namespace {

void multiply(const double* __restrict in, double* __restrict out, int count,
              double factor) noexcept
{
    for (int i = 0; i < count; ++i)
        out[i] = factor * in[i];
}

} // namespace

void CModGainModule::init()
{
    noise.init();
}

void CModGainModule::registerParams()
{
    registerParam(0, gain);
    registerParam(1, mute);
    registerParam(2, phaseInvert);
}

void CModGainModule::update()
{
    const int group = getGroupIndex();
    const int element = getElementIndex();
    isMuted = mute.value(group, element) >= 0.5;
    const double sign = phaseInvert.value(group, element) >= 0.5 ? -1.0 : 1.0;
    multiplier = isMuted ? 0.0 : gain.value(group, element, 1.0) * sign;
    isUnity = std::abs(multiplier - 1.0) <= std::numeric_limits<double>::epsilon();
}

void CModGainModule::processModules(CAudioModule* const* modules, int count)
{
    for (int i = 0; i < count; ++i)
        static_cast<CModGainModule*>(modules[i])->process();
}

void CModGainModule::process()
{
    CAudioBlockRef& output = getOutput().buffer;
    if (isUnity) {
        output = getInput();
        return;
    }
    output = getPool().take(getBlockLength());
    if (isMuted)
        noise.fill(output.write(), getBlockLength());
    else
        multiply(getInput().read(), output.write(), getBlockLength(), multiplier);
}

} // namespace tsm
