#include "Other/CParamInterfaceBase.h"

#include "Audio/CAudioParamRegistry.h"
#include "Core/CText.h"
#include "Other/CInterfaceRecords.h"
#include "Other/CParamChangeStream.h"

#include <algorithm>
#include <utility>

namespace tsm {

namespace {

/// Elements behind those that a parameter holds which one message may add.
constexpr std::int32_t kMaxGap = 256;

/// A message of a few bytes must not make a parameter grow to its limit.
CError* checkPlace(const CAudioParam& param, std::int32_t group, std::int32_t firstElement)
{
    if (group != kAllParamGroups && (group < 0 || group >= kMaxParamGroups))
        TSM_FAIL("@tsmstr_CParamInterfaceBase_checkPlace_InvalidGroup Invalid group %1 specified.",
                 toString(group));
    const CAudioParamLock lock(param);
    const CAudioParamStorage& values = param.getValues();
    const std::int32_t held = std::max(values.getElementCount(group == kAllParamGroups ? 0 : group),
                                       values.getFallbackCount());
    if (firstElement < -1 || firstElement > held + kMaxGap)
        TSM_FAIL("@tsmstr_CParamInterfaceBase_checkPlace_InvalidElement Invalid element %1 "
                 "specified.",
                 toString(firstElement));
    return nullptr;
}

/// Takes out what belongs to a client, or all with the number of all clients.
template <class T>
void takeOfClient(CMap<std::uint32_t, T*>& map, std::uint32_t clientId, COwnedArray<T>& taken)
{
    for (auto* entry = map.first(); entry;) {
        auto* const next = map.next(entry);
        if (clientId == CParamInterfaceBaseConnector::kAllClients ||
            CParamInterfaceBaseConnector::clientOf(entry->key) == clientId) {
            taken.add(entry->value);
            map.removeNode(entry);
        }
        entry = next;
    }
}

} // namespace

CParamInterfaceBase::CParamInterfaceBase() = default;

CParamInterfaceBase::~CParamInterfaceBase() = default;

void CParamInterfaceBase::declareClass(CObjectClassInfo& info)
{
    CAudioParamUndo::declareClass(info);
    info.addEvent("create-undo-data", &CParamInterfaceBase::onCreateUndoData);
    info.addEvent("remove-undo-data", &CParamInterfaceBase::onRemoveUndoData);
    info.addEvent("submit-undo-data", &CParamInterfaceBase::onSubmitUndoData);
    info.addEvent("request-undo-history", &CParamInterfaceBase::onRequestUndoHistory);
    info.addEvent("set-undo-history-pos", &CParamInterfaceBase::onSetUndoHistoryPos);
    info.addEvent("listen-param", &CParamInterfaceBase::onListenParam);
    info.addEvent("unlisten-param", &CParamInterfaceBase::onUnlistenParam);
    info.addEvent("change-param", &CParamInterfaceBase::onChangeParam);
    info.addEvent("reset-param", &CParamInterfaceBase::onResetParam);
    info.addEvent("listen-registry", &CParamInterfaceBase::onListenRegistry);
    info.addEvent("unlisten-registry", &CParamInterfaceBase::onUnlistenRegistry);
    info.addEvent("set-current-program", &CParamInterfaceBase::onSetCurrentProgram);
    info.addEvent("rename-preset", &CParamInterfaceBase::onRenamePreset);
    info.addEvent("activate-factory-preset", &CParamInterfaceBase::onActivateFactoryPreset);
    info.addEvent("activate-preset", &CParamInterfaceBase::onActivatePreset);
    info.addEvent("request-preset", &CParamInterfaceBase::onRequestPreset);
    info.addEvent("request-bank", &CParamInterfaceBase::onRequestBank);
    info.addEvent("set-default-preset", &CParamInterfaceBase::onSetDefaultPreset);
    info.addEvent("activate-default-preset", &CParamInterfaceBase::onActivateDefaultPreset);
    info.addEvent("exchange-shadow-preset", &CParamInterfaceBase::onExchangeShadowPreset);
    info.addEvent("update-shadow-preset", &CParamInterfaceBase::onUpdateShadowPreset);
}

CError* CParamInterfaceBase::init()
{
    TSM_TRY(CAudioParamUndo::init());
    TSM_TRY(findObjectByAttr(connector, "base-connector"));
    connector->setBase(*this);
    return nullptr;
}

void CParamInterfaceBase::releaseLinks()
{
    if (connector)
        connector->removeBase(*this);
    // The host isn't told of open gestures any more: it may be what ends the instance.
    COwnedArray<CParamRecord> params;
    COwnedArray<CRegistryRecord> registries;
    COwnedArray<CAudioParamUndoData> steps;
    {
        const CLockScope hold(getLock());
        takeOfClient(paramListeners, CParamInterfaceBaseConnector::kAllClients, params);
        takeOfClient(registryListeners, CParamInterfaceBaseConnector::kAllClients, registries);
        takeOfClient(openUndoData, CParamInterfaceBaseConnector::kAllClients, steps);
    }
    CAudioParamUndo::releaseLinks();
}

CError* CParamInterfaceBase::processMessage(CInputStream& message)
{
    TSM_TRY(input.run(*this, message));
    return nullptr;
}

void CParamInterfaceBase::dropClient(std::uint32_t clientId)
{
    COwnedArray<CParamRecord> params;
    COwnedArray<CRegistryRecord> registries;
    COwnedArray<CAudioParamUndoData> steps;
    {
        const CLockScope hold(getLock());
        takeOfClient(paramListeners, clientId, params);
        takeOfClient(registryListeners, clientId, registries);
        takeOfClient(openUndoData, clientId, steps);
    }
    for (CAudioParamUndoData& step : steps)
        endEdits(step);
}

void CParamInterfaceBase::restoreClient(std::uint32_t clientId)
{
    const CAudioParamHold updates(getCollector());
    for (const auto& entry : paramListeners)
        if (CParamInterfaceBaseConnector::clientOf(entry.key) == clientId)
            handleError(sendParamState(entry.key, entry.value->getParam()));
    for (const auto& entry : registryListeners)
        if (CParamInterfaceBaseConnector::clientOf(entry.key) == clientId &&
            entry.value->getRegistry())
            handleError(sendRegistryState(entry.key, *entry.value->getRegistry()));
    handleError(sendHistory(clientId));
}

void CParamInterfaceBase::send(std::uint32_t clientId, CWriteSeqBuffer& message)
{
    CPtr<CInterfaceBlock> block(new CInterfaceBlock);
    message.takeData(block->bytes);
    if (connector)
        connector->send(clientId, std::move(block));
}

// Steps

CError* CParamInterfaceBase::onCreateUndoData()
{
    std::uint32_t undoId = 0;
    CString name;
    bool isMergeable = false;
    std::int32_t mergeId = -1;
    TSM_TRY(readFields(getMessage(), undoId, name, isMergeable, mergeId));
    CPtr<CAudioParamUndoData> step(new CAudioParamUndoData(name));
    step->isMergeable = isMergeable;
    step->mergeId = mergeId;
    if (const CPtr<CAudioParamUndoData> former = takeStep(undoId))
        endEdits(*former);
    const CLockScope hold(getLock());
    openUndoData[undoId] = step.release();
    return nullptr;
}

CError* CParamInterfaceBase::onRemoveUndoData()
{
    std::uint32_t undoId = 0;
    TSM_TRY(readFields(getMessage(), undoId));
    if (const CPtr<CAudioParamUndoData> step = takeStep(undoId))
        endEdits(*step);
    return nullptr;
}

CError* CParamInterfaceBase::onSubmitUndoData()
{
    std::uint32_t undoId = 0;
    CString name;
    TSM_TRY(readFields(getMessage(), undoId, name));
    CPtr<CAudioParamUndoData> step = takeStep(undoId);
    if (!step)
        return nullptr;
    endEdits(*step);
    if (!name.isEmpty())
        step->name = name;
    commit(std::move(step));
    return nullptr;
}

// The open step of that number, which is open no more; empty for none.
CPtr<CAudioParamUndoData> CParamInterfaceBase::takeStep(std::uint32_t undoId)
{
    const CLockScope hold(getLock());
    CPtr<CAudioParamUndoData> step(openUndoData.get(undoId, nullptr));
    openUndoData.remove(undoId);
    return step;
}

void CParamInterfaceBase::endEdits(CAudioParamUndoData& step)
{
    CArray<CAudioParamEdit> edits;
    step.takeEdits(edits);
    for (const CAudioParamEdit& edit : edits)
        endParamEdit(*edit.param, edit.group, edit.element);
}

void CParamInterfaceBase::beginParamEdit(CAudioParam&, std::int32_t, std::int32_t) {}

void CParamInterfaceBase::endParamEdit(CAudioParam&, std::int32_t, std::int32_t) {}

CError* CParamInterfaceBase::onRequestUndoHistory()
{
    std::uint32_t clientId = 0;
    TSM_TRY(readFields(getMessage(), clientId));
    TSM_TRY(sendHistory(clientId));
    return nullptr;
}

CError* CParamInterfaceBase::onSetUndoHistoryPos()
{
    std::int32_t position = 0;
    TSM_TRY(readFields(getMessage(), position));
    setPosition(position, true);
    return nullptr;
}

void CParamInterfaceBase::onHistoryChanged()
{
    handleError(sendHistory(CParamInterfaceBaseConnector::kAllClients));
}

CError* CParamInterfaceBase::sendHistory(std::uint32_t clientId)
{
    // Up to the queue under the lock, so that the last one sent is the last one that was.
    const CLockScope hold(getLock());
    COwnedArray<CString> names;
    std::int32_t position = 0;
    getHistory(names, position);
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "update-undo-history", position, names.getCount()));
    for (const CString& name : names)
        TSM_TRY(writeFields(message, name));
    send(clientId, message);
    return nullptr;
}

// Parameters

CAudioParam* CParamInterfaceBase::findParam(std::uint32_t listenerId) const
{
    const CLockScope hold(getLock());
    const CParamRecord* const record = paramListeners.get(listenerId, nullptr);
    return record ? &record->getParam() : nullptr;
}

CError* CParamInterfaceBase::onListenParam()
{
    CString name;
    std::uint32_t id = 0;
    TSM_TRY(readFields(getMessage(), name, id));
    // Others hear of what is pending behind the lock.
    const CAudioParamHold updates(getCollector());
    const CLockScope hold(getLock());
    if (paramListeners.contains(id))
        return nullptr;
    CAudioParam& param = getCollector().findOrCreate(name);
    paramListeners[id] = new CParamRecord(*this, param, id);
    TSM_TRY(sendParamState(id, param));
    return nullptr;
}

CError* CParamInterfaceBase::onUnlistenParam()
{
    std::uint32_t id = 0;
    TSM_TRY(readFields(getMessage(), id));
    CPtr<CParamRecord> record; // ends behind the lock
    const CLockScope hold(getLock());
    record.reset(paramListeners.get(id, nullptr));
    paramListeners.remove(id);
    return nullptr;
}

CError* CParamInterfaceBase::sendParamState(std::uint32_t listenerId, const CAudioParam& param)
{
    const CAudioParamLock values(param);
    if (!param.getInfo()) {
        sendMessage(CParamInterfaceBaseConnector::clientOf(listenerId), "update-param-info",
                    listenerId, false, false);
        return nullptr;
    }
    CAudioParamChange change;
    param.getValues().copyFallback(change);
    TSM_TRY(sendParamChange(listenerId, param, change));
    for (int group = 0; group < param.getValues().getGroupCount(); ++group) {
        param.getValues().copyGroup(group, change);
        TSM_TRY(sendParamChange(listenerId, param, change));
    }
    return nullptr;
}

// A change of all groups comes with the description, which may be new.
CError* CParamInterfaceBase::sendParamChange(std::uint32_t listenerId, const CAudioParam& param,
                                             const CAudioParamChange& change)
{
    CWriteSeqBuffer message;
    if (change.group == kAllParamGroups) {
        TSM_TRY(writeFields(message, "update-param-info", listenerId, true));
        TSM_TRY(param.getInfo()->save(message));
        TSM_TRY(writeFields(message, true));
    } else {
        TSM_TRY(writeFields(message, "update-param", listenerId));
    }
    TSM_TRY(writeParamChange(message, change));
    send(CParamInterfaceBaseConnector::clientOf(listenerId), message);
    return nullptr;
}

CError* CParamInterfaceBase::onChangeParam()
{
    std::uint32_t listenerId = 0;
    std::uint32_t undoId = 0;
    CAudioParamChange change;
    TSM_TRY(readFields(getMessage(), listenerId, undoId));
    TSM_TRY(readParamChange(getMessage(), change));
    CAudioParam* const param = findParam(listenerId);
    const CAudioParamInfo* const info = param ? param->getInfo() : nullptr;
    // The other side may lag behind.
    if (!info || !(change.shape == info->shape))
        return nullptr;
    change.normalize();
    TSM_TRY(checkPlace(*param, change.group, change.firstElement));
    beginEdits(undoId, *param, change);
    changeParam(*param, undoId, change);
    return nullptr;
}

// Hosts must not be told under a lock that their audio thread may want.
void CParamInterfaceBase::beginEdits(std::uint32_t undoId, CAudioParam& param,
                                     const CAudioParamChange& change)
{
    CArray<CAudioParamEdit> begun;
    {
        const CLockScope hold(getLock());
        if (CAudioParamUndoData* const step = openUndoData.get(undoId, nullptr))
            step->beginEdits(param, change, begun);
    }
    for (const CAudioParamEdit& edit : begun)
        beginParamEdit(*edit.param, edit.group, edit.element);
}

void CParamInterfaceBase::changeParam(CAudioParam& param, std::uint32_t undoId,
                                      CAudioParamChange& change)
{
    const CAudioParamHold updates(getCollector());
    const CLockScope hold(getLock());
    const CAudioParamLock values(param);
    if (!(change.shape == param.getInfo()->shape))
        return;
    CAudioParamContext transaction;
    transaction.undo = openUndoData.get(undoId, nullptr);
    param.clampToLimits(change);
    CAudioParamRegistry::noteUserEdit(param, change.group, &transaction);
    param.applyChange(change, this, &transaction);
}

CError* CParamInterfaceBase::onResetParam()
{
    std::uint32_t listenerId = 0;
    std::uint32_t undoId = 0;
    std::int32_t element = -1;
    bool useFirstElement = false;
    CAudioParamChange place;
    TSM_TRY(readFields(getMessage(), listenerId, place.group, element, undoId, useFirstElement));
    CAudioParam* const param = findParam(listenerId);
    const CAudioParamInfo* const info = param ? param->getInfo() : nullptr;
    if (!info)
        return nullptr;
    TSM_TRY(checkPlace(*param, place.group, element));
    place.shape = info->shape;
    place.firstElement = std::max(element, 0);
    place.elementCount = 1;
    if (element < 0 || useFirstElement) {
        const CAudioParamLock values(*param);
        place.firstElement = 0;
        place.elementCount = param->getValues().getFallbackCount();
    }
    place.values.resize(place.elementCount * place.shape.elementSize);
    place.normalize();
    beginEdits(undoId, *param, place);

    const CAudioParamHold updates(getCollector());
    const CLockScope hold(getLock());
    CAudioParamContext transaction;
    transaction.undo = openUndoData.get(undoId, nullptr);
    if (useFirstElement)
        param->resetToFirst(place.group, this, &transaction);
    else
        param->reset(place.group, element, this, &transaction);
    return nullptr;
}

} // namespace tsm
