#include "Other/CParamInterfaceClient.h"

#include "Other/CParamChangeStream.h"
#include "Other/CParamInterfaceClientConnector.h"

#include <utility>

namespace tsm {

CParamInterfaceClient::CParamInterfaceClient() = default;

CParamInterfaceClient::~CParamInterfaceClient() = default;

void CParamInterfaceClient::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
    info.addEvent("update-undo-history", &CParamInterfaceClient::onUpdateUndoHistory);
    info.addEvent("update-param-info", &CParamInterfaceClient::onUpdateParamInfo);
    info.addEvent("update-param", &CParamInterfaceClient::onUpdateParam);
    info.addEvent("update-registry", &CParamInterfaceClient::onUpdateRegistry);
    info.addEvent("registry-data", &CParamInterfaceClient::onRegistryData);
}

CError* CParamInterfaceClient::init()
{
    TSM_TRY(CObject::init());
    CTarget<CParamInterfaceClientConnector*> target;
    TSM_TRY(findObjectByAttr(target, "client-connector"));
    connector = target.get();
    connector->setClient(this);
    return nullptr;
}

void CParamInterfaceClient::releaseLinks()
{
    while (const auto* entry = paramListeners.entries.first())
        handleError(unlistenParam(entry->key));
    while (const auto* entry = registryListeners.entries.first())
        handleError(unlistenRegistry(entry->key));
    if (connector)
        connector->setClient(nullptr);
    connector = nullptr;
    CObject::releaseLinks();
}

std::uint32_t CParamInterfaceClient::getClientId() const noexcept
{
    return connector ? connector->getClientId() : 0;
}

CError* CParamInterfaceClient::tooManyIds() const
{
    TSM_FAIL("@tsmstr_CParamInterfaceClient_makeId_TooMany Too many listeners.");
}

CError* CParamInterfaceClient::send(CWriteSeqBuffer& message)
{
    if (!connector)
        TSM_FAIL("@tsmstr_CParamInterfaceClient_send_NotConnected No client connector defined.");
    TSM_TRY(connector->send(message));
    return nullptr;
}

CError* CParamInterfaceClient::processMessage(CInputStream& message)
{
    TSM_TRY(input.run(*this, message));
    return nullptr;
}

// Listeners

template <class Listener>
CError* CParamInterfaceClient::listen(CListeners<Listener>& listeners, std::uint32_t& listenerId,
                                      const CString& name, Listener& listener)
{
    listenerId = 0;
    std::uint32_t id = 0;
    TSM_TRY(makeId(id, listeners.counter, listeners.entries));
    // Before the message, so that its answer finds the entry.
    CEntry<Listener>& entry = listeners.entries[id];
    entry.name = name;
    entry.listener = &listener;
    if (CError* const error = sendMessage(listeners.listenMessage, name, id)) {
        listeners.entries.remove(id);
        TSM_TRY(error);
    }
    listenerId = id;
    return nullptr;
}

template <class Listener>
CError* CParamInterfaceClient::unlisten(CListeners<Listener>& listeners, std::uint32_t listenerId)
{
    if (listeners.entries.remove(listenerId) && connector)
        TSM_TRY(sendMessage(listeners.unlistenMessage, listenerId));
    return nullptr;
}

CError* CParamInterfaceClient::listenParam(std::uint32_t& listenerId, const CString& name,
                                           CParamInterfaceParamListener& listener)
{
    return listen(paramListeners, listenerId, name, listener);
}

CError* CParamInterfaceClient::unlistenParam(std::uint32_t listenerId)
{
    return unlisten(paramListeners, listenerId);
}

CError* CParamInterfaceClient::listenRegistry(std::uint32_t& listenerId, const CString& name,
                                              CParamInterfaceRegistryListener& listener)
{
    return listen(registryListeners, listenerId, name, listener);
}

CError* CParamInterfaceClient::unlistenRegistry(std::uint32_t listenerId)
{
    return unlisten(registryListeners, listenerId);
}

// Steps and edits

CError* CParamInterfaceClient::createUndoData(std::uint32_t& undoId, const CString& name,
                                              bool isMergeable, std::int32_t mergeId)
{
    undoId = 0;
    std::uint32_t id = 0;
    TSM_TRY(makeId(id, undoCounter, openSteps));
    TSM_TRY(sendMessage("create-undo-data", id, name, isMergeable, mergeId));
    openSteps.add(id);
    undoId = id;
    return nullptr;
}

CError* CParamInterfaceClient::removeUndoData(std::uint32_t undoId)
{
    openSteps.remove(undoId);
    TSM_TRY(sendMessage("remove-undo-data", undoId));
    return nullptr;
}

CError* CParamInterfaceClient::submitUndoData(std::uint32_t undoId, const CString& name)
{
    openSteps.remove(undoId);
    TSM_TRY(sendMessage("submit-undo-data", undoId, name));
    return nullptr;
}

CError* CParamInterfaceClient::requestUndoHistory()
{
    TSM_TRY(sendMessage("request-undo-history", getClientId()));
    return nullptr;
}

CError* CParamInterfaceClient::setUndoHistoryPos(std::int32_t position)
{
    TSM_TRY(sendMessage("set-undo-history-pos", position));
    return nullptr;
}

CError* CParamInterfaceClient::changeParam(std::uint32_t listenerId, std::uint32_t undoId,
                                           const CAudioParamChange& change)
{
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "change-param", listenerId, undoId));
    TSM_TRY(writeParamChange(message, change));
    TSM_TRY(send(message));
    return nullptr;
}

CError* CParamInterfaceClient::resetParam(std::uint32_t listenerId, std::int32_t group,
                                          std::int32_t element, std::uint32_t undoId,
                                          bool useFirstElement)
{
    TSM_TRY(sendMessage("reset-param", listenerId, group, element, undoId, useFirstElement));
    return nullptr;
}

// Registries

CError* CParamInterfaceClient::setCurrentProgram(std::uint32_t listenerId, std::int32_t index)
{
    TSM_TRY(sendMessage("set-current-program", listenerId, index));
    return nullptr;
}

CError* CParamInterfaceClient::renamePreset(std::uint32_t listenerId, std::int32_t index,
                                            const CString& name)
{
    TSM_TRY(sendMessage("rename-preset", listenerId, index, name));
    return nullptr;
}

CError* CParamInterfaceClient::activateFactoryPreset(std::uint32_t listenerId, std::int32_t index)
{
    TSM_TRY(sendMessage("activate-factory-preset", listenerId, index));
    return nullptr;
}

CError* CParamInterfaceClient::activatePreset(std::uint32_t listenerId, std::int32_t group,
                                              const CAudioPreset& preset)
{
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "activate-preset", listenerId, group));
    TSM_TRY(preset.save(message));
    TSM_TRY(send(message));
    return nullptr;
}

CError* CParamInterfaceClient::requestPreset(std::uint32_t listenerId, std::uint32_t requestId,
                                             bool fromFactory, std::int32_t index,
                                             std::int32_t group)
{
    TSM_TRY(sendMessage("request-preset", listenerId, requestId, fromFactory, index, group));
    return nullptr;
}

CError* CParamInterfaceClient::requestBank(std::uint32_t listenerId, std::uint32_t requestId,
                                           bool fromFactory)
{
    TSM_TRY(sendMessage("request-bank", listenerId, requestId, fromFactory));
    return nullptr;
}

CError* CParamInterfaceClient::setDefaultPreset(std::uint32_t listenerId,
                                                const CAudioPreset& preset)
{
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "set-default-preset", listenerId));
    TSM_TRY(preset.save(message));
    TSM_TRY(send(message));
    return nullptr;
}

CError* CParamInterfaceClient::activateDefaultPreset(std::uint32_t listenerId)
{
    TSM_TRY(sendMessage("activate-default-preset", listenerId));
    return nullptr;
}

CError* CParamInterfaceClient::exchangeShadowPreset(std::uint32_t listenerId)
{
    TSM_TRY(sendMessage("exchange-shadow-preset", listenerId));
    return nullptr;
}

CError* CParamInterfaceClient::updateShadowPreset(std::uint32_t listenerId)
{
    TSM_TRY(sendMessage("update-shadow-preset", listenerId));
    return nullptr;
}

// What arrives. Listeners that have left are no errors: the other side lags behind.

CError* CParamInterfaceClient::readNames(COwnedArray<CString>& names)
{
    std::uint32_t count = 0;
    TSM_TRY(readFields(getMessage(), count));
    for (; count > 0; --count) {
        CString name;
        TSM_TRY(readFields(getMessage(), name));
        names.create() = name;
    }
    return nullptr;
}

CError* CParamInterfaceClient::onUpdateUndoHistory()
{
    std::int32_t position = 0;
    TSM_TRY(readFields(getMessage(), position));
    COwnedArray<CString> names;
    TSM_TRY(readNames(names));
    undoNames = std::move(names);
    undoPosition = position;
    TSM_TRY(sendEvent("undo-history-changed"));
    return nullptr;
}

CError* CParamInterfaceClient::onUpdateParamInfo()
{
    std::uint32_t id = 0;
    TSM_TRY(readFields(getMessage(), id));
    const CParamEntry* const entry = paramListeners.entries.find(id);
    if (!entry)
        return nullptr;
    TSM_TRY(entry->listener->onInfo(getMessage()));
    bool hasChange = false;
    TSM_TRY(readFields(getMessage(), hasChange));
    if (!hasChange)
        return nullptr;
    CAudioParamChange change;
    TSM_TRY(readParamChange(getMessage(), change));
    // It may have left meanwhile.
    if (const CParamEntry* const present = paramListeners.entries.find(id))
        present->listener->onChange(change);
    return nullptr;
}

CError* CParamInterfaceClient::onUpdateParam()
{
    std::uint32_t id = 0;
    CAudioParamChange change;
    TSM_TRY(readFields(getMessage(), id));
    TSM_TRY(readParamChange(getMessage(), change));
    if (const CParamEntry* const entry = paramListeners.entries.find(id))
        entry->listener->onChange(change);
    return nullptr;
}

CError* CParamInterfaceClient::onUpdateRegistry()
{
    std::uint32_t id = 0;
    bool isFactory = false;
    CString registryId;
    std::int32_t current = -1;
    TSM_TRY(readFields(getMessage(), id, isFactory, registryId, current));
    COwnedArray<CString> names;
    TSM_TRY(readNames(names));
    if (const CRegistryEntry* const entry = registryListeners.entries.find(id))
        entry->listener->onBankData(isFactory, registryId, names, current);
    return nullptr;
}

CError* CParamInterfaceClient::onRegistryData()
{
    std::uint32_t id = 0;
    std::uint32_t requestId = 0;
    bool isPreset = false;
    TSM_TRY(readFields(getMessage(), id, requestId, isPreset));
    CAudioPreset preset;
    CAudioPresetBank bank;
    TSM_TRY(isPreset ? preset.load(getMessage()) : bank.load(getMessage()));
    const CRegistryEntry* const entry = registryListeners.entries.find(id);
    if (!entry)
        return nullptr;
    if (isPreset)
        entry->listener->onPreset(requestId, preset);
    else
        entry->listener->onBank(requestId, bank);
    return nullptr;
}

} // namespace tsm
