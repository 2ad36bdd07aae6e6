#include "Audio/CAudioParamCollector.h"

#include "Audio/CAudioEnv.h"
#include "Audio/CSharedParam.h"

#include <cassert>

namespace tsm {

CAudioParamCollector::CAudioParamCollector() = default;

CAudioParamCollector::~CAudioParamCollector()
{
    sharedParams.clear(); // other instances write to parameters through them
    for (const auto& entry : params)
        delete entry.value;
}

CError* CAudioParamCollector::init()
{
    TSM_TRY(CObject::init());
    if (!getAttrString("env").isEmpty())
        TSM_TRY(findObjectByAttr(env, "env"));
    return nullptr;
}

void CAudioParamCollector::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

CAudioParam* CAudioParamCollector::find(const CString& fullName) const
{
    CLockScope hold(mapLock);
    return params.get(fullName, nullptr);
}

CAudioParam& CAudioParamCollector::findOrCreate(const CString& fullName)
{
    CLockScope hold(mapLock);
    CAudioParam*& param = params[fullName];
    if (!param)
        param = new CAudioParam(*this, fullName);
    return *param;
}

int CAudioParamCollector::getParamCount() const
{
    CLockScope hold(mapLock);
    return params.getCount();
}

void CAudioParamCollector::listParams(CArray<CAudioParam*>& list) const
{
    CLockScope hold(mapLock);
    list.clear();
    for (const auto& entry : params)
        list.add(entry.value);
}

const CAudioParamInfo& CAudioParamCollector::adoptInfo(CPtr<CAudioParamInfo> info)
{
    CLockScope hold(mapLock);
    return ownInfos.add(info.release());
}

void CAudioParamCollector::addSharedParam(const CString& fullName, CAppData& store,
                                          const CString& dataName)
{
    CAudioParam& param = findOrCreate(fullName);
    CSharedParam* made = nullptr;
    {
        CLockScope hold(mapLock);
        for (const CSharedParam& shared : sharedParams)
            if (shared.isTie(param, store, dataName))
                return;
        made = &sharedParams.create(param, store, dataName);
    }
    made->start();
}

void CAudioParamCollector::addRegistry(CAudioParamRegistry& registry, const CString& hierarchy)
{
    const CLockScope hold(registriesLock);
    int place = 0;
    while (place < registries.getCount() &&
           registries[place].hierarchyLength >= hierarchy.getLength())
        ++place;
    registries.insert(place, {&registry, hierarchy.getLength()});
}

void CAudioParamCollector::removeRegistry(CAudioParamRegistry& registry)
{
    const CLockScope hold(registriesLock);
    for (int i = registries.getCount() - 1; i >= 0; --i)
        if (registries[i].registry == &registry)
            registries.remove(i);
}

void CAudioParamCollector::listRegistries(CArray<CAudioParamRegistry*>& list) const
{
    const CLockScope hold(registriesLock);
    list.clear();
    for (const CRegistryEntry& entry : registries)
        list.add(entry.registry);
}

void CAudioParamCollector::queueBatch(CAudioParamBatch& batch)
{
    CMap<CAudioParam*, std::uint64_t> sent;
    for (const CAudioParamRecord* record = batch.first(); record; record = record->next)
        sent[record->param] = record->serial;
    queueRecords(batch);
    resendChanged(sent);
}

// Another thread's change of a parameter may have been queued in front of a batch that holds an
// earlier one.
void CAudioParamCollector::resendChanged(const CMap<CAudioParam*, std::uint64_t>& sent)
{
    for (const auto& entry : sent) {
        if (entry.key->getSerial() == entry.value)
            continue;
        CAudioParamLock hold(*entry.key);
        CAudioParamBatch batch;
        entry.key->addAllRecords(batch);
        queueRecords(batch);
    }
}

void CAudioParamCollector::queueRecords(CAudioParamBatch& records)
{
    if (records.isEmpty())
        return;
    assert(env && "parameters change before the collector knows its environment");
    CAudioParamBatch spent; // freed when the lock has been left
    CLockScope hold(env->lock);
    spent.takeAll(returned);
    if (env->isProcessing) {
        queue.takeAll(records);
        return;
    }
    // Nobody drains the queue.
    while (CAudioParamRecord* record = records.takeFirst())
        queue.merge(record, spent);
}

void CAudioParamCollector::takeQueue() noexcept
{
    returned.takeAll(applied);
    taken.takeAll(queue);
}

void CAudioParamCollector::applyQueue()
{
    while (CAudioParamRecord* record = taken.takeFirst()) {
        record->param->applyToProcess(record->change);
        applied.add(record);
    }
}

std::uint64_t CAudioParamCollector::listenerKey(const CAudioParam& param) noexcept
{
    return reinterpret_cast<std::uintptr_t>(&param);
}

void CAudioParamCollector::notifyChange(const void* source, CAudioParam& param,
                                        const CAudioParamChange& change)
{
    const std::uint64_t key = listenerKey(param);
    if (notifier.hasListeners(key))
        updates.add(CPtr<CPendingParamChange>(
            new CPendingParamChange(notifier, source, key, param, change)));
}

void CAudioParamCollector::addHostUpdate(CAudioExtParamHostBridge& bridge, std::int32_t index,
                                         double normalized)
{
    updates.addForHost(CPtr<CPendingHostUpdate>(new CPendingHostUpdate(bridge, index, normalized)));
}

} // namespace tsm
