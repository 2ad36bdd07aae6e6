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

CError* CParamInterfaceBase::findRegistry(CRegistryTarget& target)
{
    const CLockScope hold(getLock());
    const CRegistryRecord* const record = registryListeners.get(target.listenerId, nullptr);
    if (!record)
        TSM_FAIL("@tsmstr_CParamInterfaceBase_findRegistry_NotFound No param registry object '%1' "
                 "found.",
                 toString(target.listenerId));
    target.registry = record->getRegistry();
    if (!target.registry)
        TSM_FAIL("@tsmstr_CParamInterfaceBase_findRegistry_Null Param registry object '%1' is "
                 "NULL.",
                 toString(target.listenerId));
    return nullptr;
}

// Reads a listener's number and what stands behind it, and finds the listener's registry.
template <class... T>
CError* CParamInterfaceBase::readForRegistry(CRegistryTarget& target, T&... fields)
{
    TSM_TRY(readFields(getMessage(), target.listenerId, fields...));
    TSM_TRY(findRegistry(target));
    return nullptr;
}

CError* CParamInterfaceBase::onSetCurrentProgram()
{
    CRegistryTarget target;
    std::int32_t index = 0;
    TSM_TRY(readForRegistry(target, index));
    target->selectProgram(index, this);
    return nullptr;
}

CError* CParamInterfaceBase::onRenamePreset()
{
    CRegistryTarget target;
    std::int32_t index = 0;
    CString name;
    TSM_TRY(readForRegistry(target, index, name));
    target->renameProgram(index, name, this);
    return nullptr;
}

CError* CParamInterfaceBase::onActivateFactoryPreset()
{
    CRegistryTarget target;
    std::int32_t index = 0;
    TSM_TRY(readForRegistry(target, index));
    TSM_TRY(target->activateRomPreset(index));
    return nullptr;
}

CError* CParamInterfaceBase::onActivatePreset()
{
    CRegistryTarget target;
    std::int32_t group = 0;
    TSM_TRY(readForRegistry(target, group));
    TSM_TRY(target->activatePreset(getMessage(), false, registryGroup(group)));
    return nullptr;
}

CError* CParamInterfaceBase::onRequestPreset()
{
    CRegistryTarget target;
    std::uint32_t requestId = 0;
    bool fromFactory = false;
    std::int32_t index = 0;
    std::int32_t group = 0;
    TSM_TRY(readForRegistry(target, requestId, fromFactory, index, group));
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "registry-data", target.listenerId, requestId, true));
    TSM_TRY(target->acquirePreset(fromFactory, index, registryGroup(group), message));
    send(CParamInterfaceBaseConnector::clientOf(target.listenerId), message);
    return nullptr;
}

CError* CParamInterfaceBase::onRequestBank()
{
    CRegistryTarget target;
    std::uint32_t requestId = 0;
    bool fromFactory = false;
    TSM_TRY(readForRegistry(target, requestId, fromFactory));
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "registry-data", target.listenerId, requestId, false));
    TSM_TRY(target->acquireBank(fromFactory, message));
    send(CParamInterfaceBaseConnector::clientOf(target.listenerId), message);
    return nullptr;
}

CError* CParamInterfaceBase::onSetDefaultPreset()
{
    CRegistryTarget target;
    TSM_TRY(readForRegistry(target));
    TSM_TRY(target->setDefaultPreset(getMessage()));
    return nullptr;
}

// A message that asks a registry for one thing, without more to tell.
CError* CParamInterfaceBase::runOnRegistry(void (CAudioParamRegistry::*work)())
{
    CRegistryTarget target;
    TSM_TRY(readForRegistry(target));
    (target.registry->*work)();
    return nullptr;
}

CError* CParamInterfaceBase::onActivateDefaultPreset()
{
    return runOnRegistry(&CAudioParamRegistry::masterReset);
}

CError* CParamInterfaceBase::onExchangeShadowPreset()
{
    return runOnRegistry(&CAudioParamRegistry::exchangeShadowPreset);
}

CError* CParamInterfaceBase::onUpdateShadowPreset()
{
    return runOnRegistry(&CAudioParamRegistry::updateShadowPreset);
}

} // namespace tsm
