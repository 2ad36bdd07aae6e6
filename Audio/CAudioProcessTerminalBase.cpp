#include "Audio/CAudioProcessTerminalBase.h"

#include "Audio/CAudioParam.h"
#include "Audio/CAudioProcessDefBase.h"
#include "Core/CRounding.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace tsm {
namespace {

constexpr double kMinXfadeSeconds = 0.0001;

bool isSameChannel(const CAudioChannelFormat& a, const CAudioChannelFormat& b)
{
    return a.channel == b.channel && a.group == b.group;
}

} // namespace

CError* CAudioProcessTerminalBase::init()
{
    TSM_TRY(CAudioProcessBase::init());
    isSmoothDefinition = getDefinition().getIsSmoothUpdate();
    // Written so that a text that is no number takes the shortest fade too.
    const double seconds = getDefinition().getXfadeLength();
    xfadeLength = seconds > kMinXfadeSeconds ? seconds : kMinXfadeSeconds;
    return makeSlots();
}

CError* CAudioProcessTerminalBase::makeSlots()
{
    for (const auto& entry : getDefinition().getAllocs()) {
        const CAudioParamAllocDef& alloc = *entry.value;
        while (slots.getCount() <= alloc.getIndex())
            slots.create();
        CSlot& slot = slots[alloc.getIndex()];
        slot.index = alloc.getIndex();
        slot.isSmooth = alloc.getIsSmoothUpdate();
        slot.useAllGroups = alloc.getUseAllGroups();
        slot.param = &findParam(alloc.getParamName());
        const bool isOneGroup = getIsStackElement() && !slot.useAllGroups;
        slot.subscription = slot.param->subscribe(
            &slot.dirtyGroups, getParamsChangedFlag(), isOneGroup ? getGroupIndex() : -1,
            alloc.getUseAllElements() ? -1 : getElementIndex());
    }
    return nullptr;
}

const CAudioParamStorage* CAudioProcessTerminalBase::findSlotValues(int index) const noexcept
{
    const bool isKnown = index >= 0 && index < slots.getCount() && slots[index].param;
    return isKnown ? &slots[index].param->getProcessValues() : nullptr;
}

void CAudioProcessTerminalBase::setAllParamsDirty(bool isDirty)
{
    for (CSlot& slot : slots)
        slot.dirtyGroups = isDirty ? ~std::uint32_t{0} : 0;
}

void CAudioProcessTerminalBase::update()
{
    if (getInputsChanged())
        updateFormat();
    else
        updateParams();
}

void CAudioProcessTerminalBase::reset()
{
    CAudioProcessBase::reset();
    for (CRecord& record : records) {
        record.current->reset();
        // The change that waits for the end of the fade must not go with it.
        if (record.isChangePending)
            runUpdate(*record.current);
    }
    endFades();
    rebuildActive();
    publishOutputs();
}

// Channels

void CAudioProcessTerminalBase::updateFormat()
{
    endFades();
    xfadeSamples = std::max(roundToInt(getSampleRate() * xfadeLength), 1);
    fitRecords();
    for (CRecord& record : records)
        runUpdate(*record.current);
    rebuildActive();
    publishOutputs();
}

void CAudioProcessTerminalBase::fitRecords()
{
    const CAudioPort& port = *findPort(0);
    const CAudioChannel* channels[kMaxPortChannels];
    const int channelCount = port.getChannelCount();
    for (int i = 0; i < channelCount; ++i)
        channels[i] = &port.getChannel(i);

    // Records keep their place by channel slot, so that a channel keeps its module.
    COwnedArray<CRecord> former = std::move(records);
    const auto takeRecord = [&](int slot) {
        for (int i = 0; i < former.getCount(); ++i)
            if (former[i].current->channelIndex == slot)
                return former.take(i);
        return new CRecord;
    };
    if (getDefinition().getIsTerminalWhole()) {
        if (channelCount > 0)
            fitRecord(records.add(former.isEmpty() ? new CRecord : former.take(0)), channels,
                      channelCount);
    } else {
        for (int i = 0; i < channelCount; ++i)
            fitRecord(records.add(takeRecord(static_cast<int>(channels[i]->channel))), channels + i,
                      1);
    }
    for (CRecord& record : former)
        retire(record.current);
}

void CAudioProcessTerminalBase::fitRecord(CRecord& record, const CAudioChannel* const* channels,
                                          int count)
{
    const bool isNew = !record.current;
    if (isNew)
        record.current = takeModule();
    CAudioModule& module = *record.current;
    module.channelIndex = static_cast<int>(channels[0]->channel);
    module.groupIndex = static_cast<int>(channels[0]->group);
    module.inputs.clear();
    module.outputCount = count;
    for (int i = 0; i < count; ++i) {
        module.inputs.add(channels[i]);
        static_cast<CAudioChannelFormat&>(module.outputs[i]) = *channels[i];
    }
    setUpModule(module);
    if (isNew)
        module.init();
}

void CAudioProcessTerminalBase::setUpModule(CAudioModule& module) const
{
    module.elementIndex = getElementIndex();
    module.sampleRate = getSampleRate();
    module.inputLatency = getInputLatency();
    for (int i = 0; i < module.outputCount; ++i) {
        module.outputs[i].latency = getInputLatency();
        module.outputs[i].buffer.reset();
    }
}

CPtr<CAudioModule> CAudioProcessTerminalBase::takeModule()
{
    if (!freeModules.isEmpty())
        return CPtr<CAudioModule>(freeModules.take(freeModules.getCount() - 1));
    CPtr<CAudioModule> module(createModule());
    module->process = this;
    module->registerParams();
    return module;
}

/// Keeps a module for the next switch, so that a stream of changes allocates nothing. It must not
/// bring its old signal along.
void CAudioProcessTerminalBase::retire(CPtr<CAudioModule>& module)
{
    if (!module)
        return;
    module->reset();
    for (CAudioModuleOutput& output : module->outputs)
        output.buffer.reset();
    freeModules.add(module.release());
}

void CAudioProcessTerminalBase::flagParams(CAudioModule& module, bool isChanged)
{
    for (CAudioModuleParam* param : module.params)
        if (param)
            param->changed = isChanged;
    module.anyParamDirty = isChanged;
}

void CAudioProcessTerminalBase::runUpdate(CAudioModule& module)
{
    flagParams(module, true);
    module.update();
    flagParams(module, false);
}

// Parameters

/// Flags the module's parameter if the slot's change concerns it.
void CAudioProcessTerminalBase::markDirty(CAudioModule& module, const CSlot& slot)
{
    const bool isSingleGroup = slot.param->getProcessValues().getShape().isSingleGroup;
    const int group = isSingleGroup ? 0 : module.groupIndex;
    assert(group >= 0 && group < kMaxParamGroups);
    const bool isConcerned = slot.useAllGroups || (slot.dirtyGroups >> group & 1u);
    if (!isConcerned)
        return;
    if (slot.index < module.params.getCount() && module.params[slot.index])
        module.params[slot.index]->changed = true;
    module.anyParamDirty = true;
}

void CAudioProcessTerminalBase::updateParams()
{
    bool isSmooth = isSmoothDefinition;
    for (const CSlot& slot : slots) {
        if (slot.dirtyGroups == 0)
            continue;
        isSmooth |= slot.isSmooth;
        for (CRecord& record : records)
            markDirty(*record.current, slot);
    }
    bool isRepublished = false;
    for (CRecord& record : records) {
        if (!record.current->anyParamDirty)
            continue;
        if (isSmooth)
            changeModule(record);
        else
            record.current->update();
        isRepublished = true;
        flagParams(*record.current, false);
    }
    finishFades();
    if (isRepublished)
        publishOutputs();
}

void CAudioProcessTerminalBase::changeModule(CRecord& record)
{
    if (record.isFading) {
        record.isChangePending = true;
        return;
    }
    fadingCount += startSwitch(record) ? 1 : 0;
    rebuildActive();
}

/// Replaces the module by a fresh one that has the parameters as they are now. Tells whether a
/// fade has begun; there is none between outputs that don't go together.
bool CAudioProcessTerminalBase::startSwitch(CRecord& record)
{
    retire(record.previous);
    record.previous = std::move(record.current);
    record.current = takeModule();
    CAudioModule& former = *record.previous;
    CAudioModule& module = *record.current;
    flagParams(former, false);

    module.channelIndex = former.channelIndex;
    module.groupIndex = former.groupIndex;
    module.inputs = former.inputs;
    module.outputCount = former.outputCount;
    for (int i = 0; i < former.outputCount; ++i)
        static_cast<CAudioChannelFormat&>(module.outputs[i]) = former.outputs[i];
    setUpModule(module);
    module.init();
    runUpdate(module);

    record.isChangePending = false;
    record.isFading = module.outputCount == former.outputCount &&
                      std::equal(module.outputs, module.outputs + module.outputCount,
                                 former.outputs, isSameChannel);
    if (record.isFading)
        startFade(record);
    else
        retire(record.previous);
    return record.isFading;
}

void CAudioProcessTerminalBase::startFade(CRecord& record) const
{
    const CAudioModule& module = *record.current;
    int latency = getInputLatency();
    const double step = std::numbers::pi / xfadeSamples;
    for (int i = 0; i < module.outputCount; ++i) {
        latency = std::max(latency, module.outputs[i].latency);
        record.fades[i].start(step, 0.5 * std::sin(std::numbers::pi / 2 - step));
    }
    record.waitSamples = latency - getInputLatency();
    record.fadeSamples = xfadeSamples;
}

/// Ends the fades that have used up their samples. The samples count and no clock: a short block
/// followed by long ones must not cut a fade.
void CAudioProcessTerminalBase::finishFades()
{
    bool isAnyDone = false;
    for (CRecord& record : records) {
        if (!record.isFading || record.waitSamples > 0 || record.fadeSamples > 0)
            continue;
        isAnyDone = true;
        record.isFading = false;
        --fadingCount;
        if (record.isChangePending)
            fadingCount += startSwitch(record) ? 1 : 0;
        else
            retire(record.previous);
    }
    if (isAnyDone) {
        rebuildActive();
        publishOutputs();
    }
}

void CAudioProcessTerminalBase::endFades()
{
    for (CRecord& record : records) {
        retire(record.previous);
        record.isFading = record.isChangePending = false;
        record.waitSamples = record.fadeSamples = 0;
    }
    fadingCount = 0;
}

void CAudioProcessTerminalBase::rebuildActive()
{
    activeModules.clear();
    outputs.clear();
    for (CRecord& record : records) {
        CAudioModule& module = *record.current;
        activeModules.add(&module);
        if (record.isFading)
            activeModules.add(record.previous.get());
        for (int i = 0; i < module.outputCount; ++i)
            outputs.add(&module.outputs[i].buffer);
    }
}

void CAudioProcessTerminalBase::publishOutputs()
{
    CAudioFormat format;
    format.sampleRate = getSampleRate();
    for (const CRecord& record : records)
        for (int i = 0; i < record.current->outputCount; ++i)
            format.add(record.current->outputs[i]);
    publish(format);
}

// Signal

void CAudioProcessTerminalBase::process()
{
    if (!pull())
        return;
    const int length = getBlockLength();
    for (CAudioModule* module : activeModules)
        module->blockLength = length;
    if (!activeModules.isEmpty())
        processModules(activeModules.data(), activeModules.getCount());
    if (fadingCount > 0)
        for (CRecord& record : records)
            if (record.isFading)
                mixFade(record);
    sendAll(outputs.data(), outputs.getCount());
    releaseInputs();
}

void CAudioProcessTerminalBase::mixFade(CRecord& record)
{
    for (int i = 0; i < record.current->outputCount; ++i)
        mixChannel(record, i);
    const int waited = std::min(record.waitSamples, getBlockLength());
    record.waitSamples -= waited;
    record.fadeSamples -= std::min(record.fadeSamples, getBlockLength() - waited);
}

/// Leaves in the new module's output: the old signal during the wait, the crossfade, the new
/// signal.
void CAudioProcessTerminalBase::mixChannel(CRecord& record, int channel)
{
    CAudioBlockRef& fresh = record.current->outputs[channel].buffer;
    const CAudioBlockRef former = std::exchange(record.previous->outputs[channel].buffer, {});
    const int length = getBlockLength();
    const int waitEnd = std::min(record.waitSamples, length);
    const int fadeEnd = waitEnd + std::min(record.fadeSamples, length - waitEnd);
    if (waitEnd == length)
        fresh = former;
    // Modules that put nothing out have nothing to fade.
    if (waitEnd == length || fadeEnd == 0 || !fresh || !former)
        return;
    CAudioBlockRef mixed = getPool().take(length);
    const double* newSamples = fresh.read();
    const double* oldSamples = former.read();
    double* const out = mixed.write();
    std::copy_n(oldSamples, waitEnd, out);
    record.fades[channel].mix(oldSamples + waitEnd, newSamples + waitEnd, out + waitEnd,
                              fadeEnd - waitEnd);
    std::copy(newSamples + fadeEnd, newSamples + length, out + fadeEnd);
    fresh = std::move(mixed);
}

} // namespace tsm
