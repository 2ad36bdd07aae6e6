#include "Core/CText.h"
#include "Other/CInterfaceRecords.h"

namespace tsm {

namespace {

/// A group as registries name it: -1 for all.
std::int32_t registryGroup(std::int32_t group)
{
    return group == kAllParamGroups ? -1 : group;
}

} // namespace

CError* CParamInterfaceBase::onListenRegistry()
{
    CString name;
    std::uint32_t id = 0;
    TSM_TRY(readFields(getMessage(), name, id));
    CAudioParamRegistry* const registry = CAudioParamRegistry::find(getCollector(), name);
    {
        const CLockScope hold(getLock());
        if (registryListeners.contains(id))
            return nullptr;
        registryListeners[id] = new CRegistryRecord(*this, registry, id);
    }
    // Without the lock: it comes behind a registry's.
    if (registry)
        TSM_TRY(sendRegistryState(id, *registry));
    return nullptr;
}

CError* CParamInterfaceBase::onUnlistenRegistry()
{
    std::uint32_t id = 0;
    TSM_TRY(readFields(getMessage(), id));
    // Ends behind the lock, which another thread that is inside of it may want.
    CPtr<CRegistryRecord> record;
    const CLockScope hold(getLock());
    record.reset(registryListeners.get(id, nullptr));
    registryListeners.remove(id);
    return nullptr;
}

CError* CParamInterfaceBase::sendRegistryState(std::uint32_t listenerId,
                                               CAudioParamRegistry& registry)
{
    TSM_TRY(sendBankNames(listenerId, registry, false));
    if (registry.getIsMaster())
        TSM_TRY(sendBankNames(listenerId, registry, true));
    return nullptr;
}

CError* CParamInterfaceBase::sendBankNames(std::uint32_t listenerId, CAudioParamRegistry& registry,
                                           bool isFactory)
{
    const CLockScope hold(namesLock);
    COwnedArray<CString> names;
    int current = -1;
    registry.getPresetNames(isFactory, names, current);
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "update-registry", listenerId, isFactory, registry.getId(),
                        current, names.getCount()));
    for (const CString& name : names)
        TSM_TRY(writeFields(message, name));
    send(CParamInterfaceBaseConnector::clientOf(listenerId), message);
    return nullptr;
}

CError* CParamInterfaceBase::findRegistry(CAudioParamRegistry*& registry, std::uint32_t listenerId)
{
    const CLockScope hold(getLock());
    const CRegistryRecord* const record = registryListeners.get(listenerId, nullptr);
    if (!record)
        TSM_FAIL("@tsmstr_CParamInterfaceBase_findRegistry_NotFound No param registry object '%1' "
                 "found.",
                 toString(listenerId));
    registry = record->getRegistry();
    if (!registry)
        TSM_FAIL("@tsmstr_CParamInterfaceBase_findRegistry_Null Param registry object '%1' is "
                 "NULL.",
                 toString(listenerId));
    return nullptr;
}

// Reads a listener's number and what stands behind it, and finds the listener's registry.
template <class... T>
CError* CParamInterfaceBase::readForRegistry(CAudioParamRegistry*& registry,
                                             std::uint32_t& listenerId, T&... fields)
{
    TSM_TRY(readFields(getMessage(), listenerId, fields...));
    TSM_TRY(findRegistry(registry, listenerId));
    return nullptr;
}

CError* CParamInterfaceBase::onSetCurrentProgram()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    std::int32_t index = 0;
    TSM_TRY(readForRegistry(registry, id, index));
    registry->selectProgram(index, this);
    return nullptr;
}

CError* CParamInterfaceBase::onRenamePreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    std::int32_t index = 0;
    CString name;
    TSM_TRY(readForRegistry(registry, id, index, name));
    registry->renameProgram(index, name, this);
    return nullptr;
}

CError* CParamInterfaceBase::onActivateFactoryPreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    std::int32_t index = 0;
    TSM_TRY(readForRegistry(registry, id, index));
    TSM_TRY(registry->activateRomPreset(index));
    return nullptr;
}

CError* CParamInterfaceBase::onActivatePreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    std::int32_t group = 0;
    TSM_TRY(readForRegistry(registry, id, group));
    TSM_TRY(registry->activatePreset(getMessage(), false, registryGroup(group)));
    return nullptr;
}

CError* CParamInterfaceBase::onRequestPreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    std::uint32_t requestId = 0;
    bool fromFactory = false;
    std::int32_t index = 0;
    std::int32_t group = 0;
    TSM_TRY(readForRegistry(registry, id, requestId, fromFactory, index, group));
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "registry-data", id, requestId, true));
    TSM_TRY(registry->acquirePreset(fromFactory, index, registryGroup(group), message));
    send(CParamInterfaceBaseConnector::clientOf(id), message);
    return nullptr;
}

CError* CParamInterfaceBase::onRequestBank()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    std::uint32_t requestId = 0;
    bool fromFactory = false;
    TSM_TRY(readForRegistry(registry, id, requestId, fromFactory));
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "registry-data", id, requestId, false));
    TSM_TRY(registry->acquireBank(fromFactory, message));
    send(CParamInterfaceBaseConnector::clientOf(id), message);
    return nullptr;
}

CError* CParamInterfaceBase::onSetDefaultPreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    TSM_TRY(readForRegistry(registry, id));
    TSM_TRY(registry->setDefaultPreset(getMessage()));
    return nullptr;
}

CError* CParamInterfaceBase::onActivateDefaultPreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    TSM_TRY(readForRegistry(registry, id));
    registry->masterReset();
    return nullptr;
}

CError* CParamInterfaceBase::onExchangeShadowPreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    TSM_TRY(readForRegistry(registry, id));
    registry->exchangeShadowPreset();
    return nullptr;
}

CError* CParamInterfaceBase::onUpdateShadowPreset()
{
    CAudioParamRegistry* registry = nullptr;
    std::uint32_t id = 0;
    TSM_TRY(readForRegistry(registry, id));
    registry->updateShadowPreset();
    return nullptr;
}

} // namespace tsm
