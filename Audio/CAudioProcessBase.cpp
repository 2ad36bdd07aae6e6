#include "Audio/CAudioProcessBase.h"

#include "Audio/CAudioGraphSteps.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamDef.h"
#include "Audio/CAudioParamFilterDef.h"
#include "Audio/CAudioParamRemapDef.h"
#include "Audio/CAudioParamSharedStorage.h"
#include "Audio/CAudioProcessDefBase.h"
#include "Audio/CAudioProcessStack.h"
#include "Audio/CParamName.h"

#include <algorithm>

namespace tsm {

CAudioProcessBase::~CAudioProcessBase()
{
    CAudioProcessBase::detach();
}

CError* CAudioProcessBase::init()
{
    return nullptr;
}

void CAudioProcessBase::place(const CAudioProcessDefBase& def,
                              const CAudioProcessContext& newContext,
                              CAudioProcessBase* parentProcess, const CString& path,
                              const CAudioProcessPlace& where)
{
    definition = &def;
    context = newContext;
    parent = parentProcess;
    ownerPath = path;
    groupIndex = where.groupIndex;
    elementIndex = def.getStackIndexShift() + where.elementIndex;
    isStackElement = where.isStackElement;
    isFilledByInput = def.getIsCompInput();
    remaps.begin(path);
    getPort(0);
}

// Parameters

CError* CAudioProcessBase::registerParams()
{
    for (const CAudioParamRemapDef* remap : definition->getRemaps())
        for (const CAudioParamRemapDef::CPair& pair : remap->getPairs())
            remaps.add(pair.origName, pair.newName);
    for (const auto& entry : definition->getParamDefs()) {
        const CString name = resolveName(entry.relativeName, ownerPath);
        if (!entry.def->hasStorage())
            continue;
        CAudioParam& param = context.collector->findOrCreate(name);
        if (!param.getInfo())
            param.attachInfo(entry.def->getInfo());
    }
    // Behind the parameters, so that the stored values have somewhere to go, and before the
    // filters, which then begin with them.
    for (const auto& entry : definition->getSharedStorages())
        context.collector->addSharedParam(resolveName(entry.relativeName, ownerPath),
                                          entry.def->getStore(), entry.def->getDataName());
    for (const CAudioParamFilterDef* def : definition->getFilterDefs()) {
        CPtr<CAudioParamFilter> filter;
        if (CError* error = def->makeFilter(filter, this, *context.collector, ownerPath))
            return addError(error, __FILE__, __LINE__, definition->getFullName());
        filters.add(filter.release());
    }
    return nullptr;
}

CString CAudioProcessBase::paramName(const CString& name) const
{
    CString fullName = ownerPath + "." + name;
    for (const CAudioProcessBase* process = this; process; process = process->parent)
        process->remaps.apply(fullName);
    return fullName;
}

CAudioParam& CAudioProcessBase::findParam(const CString& name)
{
    return findParamByFullName(paramName(name));
}

CAudioParam& CAudioProcessBase::findParamByFullName(const CString& fullName)
{
    CAudioParam& param = context.collector->findOrCreate(fullName);
    if (param.getInfo())
        return param;
    if (const CAudioParamDef* def = findParamDef(fullName))
        param.attachInfo(def->getInfo());
    return param;
}

const CAudioParamDef* CAudioProcessBase::findParamDef(const CString& fullName) const
{
    // An instance may stand at another path than its definition, so the definitions are asked that
    // are at work from here up.
    for (const CAudioProcessBase* process = this; process; process = process->parent)
        for (const auto& entry : process->definition->getParamDefs())
            if (resolveName(entry.relativeName, process->ownerPath) == fullName)
                return entry.def;
    // Definitions stand in the shared tree below "audio" where instances stand below their root.
    const int dot = fullName.find('.');
    if (dot < 0)
        return nullptr;
    const CObject* found =
        definition->findObject(CString("shared::audio") + fullName.substring(dot));
    return dynamic_cast<const CAudioParamDef*>(found);
}

EInputCombo CAudioProcessBase::getInputCombo() const
{
    return definition->getInputCombo();
}

// Links

CAudioPort* CAudioProcessBase::findPort(int index) const noexcept
{
    for (int i = 0; i < ports.getCount(); ++i)
        if (ports[i].getIndex() == index)
            return &ports[i];
    return nullptr;
}

CAudioPort& CAudioProcessBase::getPort(int index)
{
    if (CAudioPort* port = findPort(index))
        return *port;
    return ports.add(new CAudioPort(index, pendingInputChanges));
}

CAudioLink& CAudioProcessBase::connect(CAudioProcessBase* source, int sourcePort,
                                       CAudioProcessBase& target, int targetPort)
{
    CAudioLink& link = target.getPort(targetPort).addLink(source, sourcePort);
    if (source) {
        source->outLinks.add(&link);
        source->publishTo(link);
    }
    return link;
}

void CAudioProcessBase::disconnect(CAudioLink& link)
{
    if (CAudioProcessBase* source = link.getSource()) {
        const int index = source->outLinks.indexOf(&link);
        if (index >= 0)
            source->outLinks.remove(index);
    }
    link.getDestination().removeLink(link);
}

void CAudioProcessBase::detach()
{
    while (!outLinks.isEmpty())
        disconnect(*outLinks.last());
    for (CAudioPort& port : ports)
        while (!port.getLinks().isEmpty())
            disconnect(port.getLinks().last());
}

void CAudioProcessBase::publishTo(CAudioLink& link)
{
    if (link.getSourcePort() == 0 && isUpdated)
        link.publish(outputFormat);
}

void CAudioProcessBase::publish(const CAudioFormat& format, int sourcePort)
{
    if (sourcePort == 0)
        outputFormat = format;
    for (CAudioLink* link : outLinks)
        if (link->getSourcePort() == sourcePort)
            link->publish(format);
}

void CAudioProcessBase::publishChannels(double rate, int latency)
{
    const CAudioPort& port = getPort(0);
    CAudioFormat format;
    format.sampleRate = rate;
    for (int i = 0; i < port.getChannelCount(); ++i)
        format.add({port.getChannel(i).channel, port.getChannel(i).group, latency});
    publish(format);
}

void CAudioProcessBase::sendToAll(int index, const CAudioBlockRef& block, int length,
                                  int sourcePort)
{
    for (CAudioLink* link : outLinks)
        if (link->getSourcePort() == sourcePort)
            link->put(index, block, length);
}

void CAudioProcessBase::releaseInputs() noexcept
{
    for (CAudioPort& port : ports)
        port.release();
}

void CAudioProcessBase::reset()
{
    for (CAudioPort& port : ports) {
        port.release();
        port.resetDelays();
    }
}

// A sub-block

void CAudioProcessBase::listSteps(CAudioGraphSteps& steps)
{
    steps.add(*this);
}

bool CAudioProcessBase::beginPull()
{
    const bool isAtFirst = firstInput && pendingInputChanges == 0;
    blockLength = isAtFirst ? firstInput->getBlockLength() : 0;
    if (blockLength == 0)
        blockLength = findBlockLength();

    // Inputs that turn out unchanged must not swallow a change of a parameter.
    if (pendingInputChanges > 0 && rebuildInputs())
        runUpdate(true);
    else if (paramsChanged)
        runUpdate(false);
    return blockLength > 0;
}

int CAudioProcessBase::findBlockLength() const noexcept
{
    for (const CAudioPort& port : ports)
        if (const CAudioLink* const link = port.findUsedLink(); link && link->getBlockLength() > 0)
            return link->getBlockLength();
    return 0;
}

bool CAudioProcessBase::pull()
{
    if (!beginPull())
        return false;
    for (CAudioPort& port : ports)
        port.pull(getPool(), blockLength, inputCombo, isFilledByInput);
    return true;
}

void CAudioProcessBase::runUpdate(bool isFormatChange)
{
    isUpdated = true;
    paramsChanged = false;
    inputsChanged = isFormatChange;
    if (isFormatChange)
        setAllParamsDirty(true);
    update();
    setAllParamsDirty(false);
    inputsChanged = false;
    paramsChanged |= needsUpdates();
}

bool CAudioProcessBase::rebuildInputs()
{
    pendingInputChanges = 0;
    inputCombo = getInputCombo();
    const double formerRate = sampleRate;
    const int formerLatency = inputLatency;
    bool isChanged = !isUpdated;
    inputLatency = 0;
    for (const CAudioPort& port : ports)
        inputLatency = std::max(inputLatency, port.findLatency());
    for (int i = ports.getCount() - 1; i >= 0; --i)
        if (const double rate = ports[i].getSampleRate(); rate > 0.0)
            sampleRate = rate;
    firstInput = nullptr;
    for (CAudioPort& port : ports) {
        isChanged |= port.rebuild(getPool(), inputLatency);
        if (!firstInput)
            firstInput = port.findUsedLink();
    }
    return isChanged || sampleRate != formerRate || inputLatency != formerLatency;
}

// Making

CError* createProcess(CPtr<CAudioProcessBase>& holder, const CAudioProcessDefBase& definition,
                      const CAudioProcessContext& context, CAudioProcessBase* parent,
                      const CString& path, const CAudioProcessPlace& place)
{
    const auto errorContext = [&] { return definition.getFullName(); };
    const bool isStack = definition.getIsStacked() && !place.isStackElement;
    CPtr<CAudioProcessBase> process(isStack ? new CAudioProcessStack : definition.createInstance());
    process->place(definition, context, parent, path, place);
    if (!place.isStackElement)
        TSM_TRY(process->registerParams());
    process->postCreate();
    TSM_TRY(process->init());
    holder = std::move(process);
    return nullptr;
}

} // namespace tsm
