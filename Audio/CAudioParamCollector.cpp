#include "Audio/CAudioParamCollector.h"

#include "Audio/CAudioEnv.h"
#include "Audio/CPendingParamUpdate.h"

#include <cassert>
#include <utility>

namespace tsm {

CAudioParamCollector::CAudioParamCollector() = default;

CAudioParamCollector::~CAudioParamCollector()
{
    while (CPendingParamUpdate* update = pendingHead) {
        pendingHead = update->next;
        delete update;
    }
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
        addPending(new CPendingParamChange(notifier, source, key, param, change));
}

void CAudioParamCollector::addHostUpdate(CAudioExtParamHostBridge& bridge, std::int32_t index,
                                         double normalised)
{
    addPending(new CPendingHostUpdate(bridge, index, normalised));
    deliverPending();
}

void CAudioParamCollector::raiseHold(EHold hold)
{
    CLockScope guard(notificationLock);
    ++(hold == EHold::Transaction ? transactionHolds : registryHolds);
}

void CAudioParamCollector::releaseHold(EHold hold)
{
    {
        CLockScope guard(notificationLock);
        std::int32_t& holds = hold == EHold::Transaction ? transactionHolds : registryHolds;
        assert(holds > 0);
        --holds;
    }
    deliverPending();
}

void CAudioParamCollector::addPending(CPendingParamUpdate* update)
{
    CLockScope guard(notificationLock);
    (pendingTail ? pendingTail->next : pendingHead) = update;
    pendingTail = update;
}

// One thread at a time, and an outer call goes on with what listeners cause: so what is told stays
// in the order of the changes, and nobody waits for another's listeners.
void CAudioParamCollector::deliverPending()
{
    {
        CLockScope guard(notificationLock);
        if (isDelivering || !pendingHead)
            return;
        isDelivering = true;
    }
    for (;;) {
        const CPtr<CPendingParamUpdate> update(takePending());
        if (!update)
            return;
        update->deliver();
    }
}

// The next update; null, and the end of the delivery, when there is none or it has to wait.
CPendingParamUpdate* CAudioParamCollector::takePending()
{
    CLockScope guard(notificationLock);
    CPendingParamUpdate* update = pendingHead;
    if (!update || transactionHolds > 0 || registryHolds > 0) {
        isDelivering = false;
        return nullptr;
    }
    pendingHead = update->next;
    if (!pendingHead)
        pendingTail = nullptr;
    return update;
}

} // namespace tsm
