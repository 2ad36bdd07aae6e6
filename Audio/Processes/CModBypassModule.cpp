#include "Audio/Processes/CModBypassModule.h"

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioProcessTerminalBase.h"

namespace tsm {

void CModBypassModule::init()
{
    noise.init();
}

void CModBypassModule::registerParams()
{
    registerParam(0, enable);
    registerParam(1, groupSolo);
}

void CModBypassModule::update()
{
    pass = choose();
}

CModBypassModule::EPass CModBypassModule::choose() const
{
    const bool isEnabled = enable.value(getGroupIndex(), getElementIndex()) >= 0.5;
    const CAudioPort* dry = getProcess().findPort(1);
    const bool hasDry = dry && dry->getLinks().getCount() > 0;
    if ((isEnabled && !hasDry) || isSilencedBySolo())
        return EPass::Silence;
    return isEnabled ? EPass::Dry : EPass::Processed;
}

bool CModBypassModule::isSilencedBySolo() const
{
    const CAudioParamStorage* solo = groupSolo.getValues();
    if (!solo)
        return false;
    bool isAnySoloed = false;
    for (int group = 0; group < solo->getGroupCount(); ++group) {
        const bool isSoloed = solo->getElementCount(group) > 0 && solo->value(group, 0) >= 0.5;
        if (isSoloed && group == getGroupIndex())
            return false;
        isAnySoloed |= isSoloed;
    }
    return isAnySoloed;
}

const CAudioBlockRef* CModBypassModule::findDry() const
{
    const CAudioPort* dry = getProcess().findPort(1);
    const auto slot = static_cast<std::uint32_t>(getChannelIndex());
    const CAudioChannel* channel = dry ? dry->findChannel(slot) : nullptr;
    return channel && channel->buffer ? &channel->buffer : nullptr;
}

void CModBypassModule::processModules(CAudioModule* const* modules, int count)
{
    for (int i = 0; i < count; ++i)
        static_cast<CModBypassModule*>(modules[i])->process();
}

void CModBypassModule::process()
{
    CAudioBlockRef& output = getOutput().buffer;
    if (pass == EPass::Processed) {
        output = getInput();
        return;
    }
    const CAudioBlockRef* dry = pass == EPass::Dry ? findDry() : nullptr;
    if (dry) {
        output = *dry;
        return;
    }
    output = getPool().take(getBlockLength());
    noise.fill(output.write(), getBlockLength());
}

} // namespace tsm
