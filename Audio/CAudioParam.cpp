#include "Audio/CAudioParam.h"

#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamFilter.h"
#include "Audio/CParamListener.h"
#include "Audio/CParamTap.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

namespace tsm {

/// The caller's transaction for changes that the engine shall see at one time: they go into its
/// batch or, when it has none, into the scope's own, which is sent at the end. The lock is held.
class CAudioParam::CTransaction {
public:
    CTransaction(CAudioParamCollector& paramCollector, const CAudioParamContext* given)
        : collector(paramCollector), context(given ? *given : CAudioParamContext())
    {
        if (!context.batch)
            context.batch = &own;
    }
    ~CTransaction() { collector.queueRecords(own); }
    CTransaction(const CTransaction&) = delete;
    CTransaction& operator=(const CTransaction&) = delete;

    [[nodiscard]] CAudioParamContext& get() noexcept { return context; }

private:
    CAudioParamCollector& collector;
    CAudioParamBatch own;
    CAudioParamContext context;
};

CAudioParamLock::CAudioParamLock(const CAudioParam& target) : param(target)
{
    param.getCollector().getUpdates().raiseHold();
    hasFilterLock = param.enterLock();
}

CAudioParamLock::~CAudioParamLock()
{
    param.leaveLock(hasFilterLock);
    param.getCollector().getUpdates().releaseHold();
}

CAudioParam::CAudioParam(CAudioParamCollector& owner, const CString& fullName)
    : collector(owner), name(fullName)
{
}

CAudioParam::~CAudioParam()
{
    assert(subscriptions.isEmpty());
}

// Filters lock several parameters, in orders of their own: all holders of those locks go through
// the one filter lock first.
bool CAudioParam::enterLock() const
{
    for (;;) {
        const bool needsFilterLock = isFiltered.load();
        if (needsFilterLock)
            collector.filterLock.enter();
        lock.enter();
        if (needsFilterLock || !isFiltered.load())
            return needsFilterLock;
        lock.leave(); // a filter was attached meanwhile
    }
}

void CAudioParam::leaveLock(bool hasFilterLock) const
{
    lock.leave();
    if (hasFilterLock)
        collector.filterLock.leave();
}

void CAudioParam::attachInfo(const CAudioParamInfo& newInfo, CAudioParamContext* context)
{
    CAudioParamLock hold(*this);
    const CAudioParamInfo* present = info.load();
    if (present && present->isSameAs(newInfo))
        return;
    info.store(&newInfo);
    CTransaction transaction(collector, context);
    // What a definition says is no step that can be taken back.
    transaction.get().undo = nullptr;
    takeDefaults(newInfo, transaction.get());
}

void CAudioParam::takeDefaults(const CAudioParamInfo& newInfo, CAudioParamContext& context)
{
    initial = newInfo.defaults;
    CAudioParamChange change;
    newInfo.defaults.copyFallback(change);
    makeChange(change, nullptr, context);
    for (int group = 1; group < newInfo.defaults.getGroupCount(); ++group) {
        newInfo.defaults.copyGroup(group, change);
        makeChange(change, nullptr, context);
    }
}

void CAudioParam::setValues(std::int32_t group, std::int32_t firstElement, const double* newValues,
                            std::int32_t elementCount, const void* source,
                            CAudioParamContext* context, bool complete)
{
    const CAudioParamInfo* present = info.load();
    if (!present || present->shape.dataType != EAudioParamType::Number || elementCount < 0 ||
        elementCount > kMaxParamElements)
        return;
    CAudioParamChange change;
    change.group = group;
    change.firstElement = firstElement;
    change.elementCount = elementCount;
    change.complete = complete;
    change.shape = present->shape;
    for (int i = 0; i < elementCount * present->shape.elementSize; ++i)
        change.values.add(newValues[i]);
    applyChange(change, source, context);
}

void CAudioParam::setValue(std::int32_t group, std::int32_t element, double newValue,
                           const void* source, CAudioParamContext* context)
{
    const CAudioParamInfo* present = info.load();
    if (!present)
        return;
    if (present->shape.elementSize == 1) {
        setValues(group, element, &newValue, 1, source, context);
        return;
    }
    double numbers[kMaxParamElementSize] = {newValue};
    CAudioParamLock hold(*this);
    for (int i = 1; i < present->shape.elementSize; ++i)
        numbers[i] = values.value(group, element, 0.0, i);
    setValues(group, element, numbers, 1, source, context);
}

void CAudioParam::setText(std::int32_t group, std::int32_t element, const CString& newText,
                          const void* source, CAudioParamContext* context)
{
    setItem(group, element, CPtr<CAudioParamDataItem>(new CAudioParamDataItemString(newText)),
            source, context);
}

void CAudioParam::setRaw(std::int32_t group, std::int32_t element, const void* bytes, int count,
                         const void* source, CAudioParamContext* context)
{
    setItem(group, element, CPtr<CAudioParamDataItem>(new CAudioParamDataItemRaw(bytes, count)),
            source, context);
}

void CAudioParam::setItem(std::int32_t group, std::int32_t element, CPtr<CAudioParamDataItem> item,
                          const void* source, CAudioParamContext* context)
{
    const CAudioParamInfo* present = info.load();
    if (!present || present->shape.dataType != item->getType())
        return;
    CAudioParamChange change;
    change.group = group;
    change.firstElement = element;
    change.shape = present->shape;
    change.addItem(std::move(item));
    applyChange(change, source, context);
}

void CAudioParam::reset(std::int32_t group, std::int32_t element, const void* source,
                        CAudioParamContext* context)
{
    CAudioParamLock hold(*this);
    if (!info.load())
        return;
    CTransaction transaction(collector, context);
    CAudioParamChange change;
    if (element >= 0)
        initial.copyElement(group, element, change);
    else if (initial.getElementCount(group) > 0)
        initial.copyGroup(group, change);
    else
        initial.copyFallback(change);
    change.group = group;
    applyChange(change, source, &transaction.get());
    for (int i = 1; group == kAllParamGroups && element < 0 && i < initial.getGroupCount(); ++i) {
        initial.copyGroup(i, change);
        applyChange(change, source, &transaction.get());
    }
}

void CAudioParam::resetToFirst(std::int32_t group, const void* source, CAudioParamContext* context)
{
    CAudioParamLock hold(*this);
    if (!info.load())
        return;
    const int held = values.getElementCount(group == kAllParamGroups ? 0 : group);
    CAudioParamChange first;
    initial.copyElement(group, 0, first);
    CAudioParamChange change(first);
    for (int i = 1; i < std::max(held, initial.getFallbackCount()); ++i) {
        for (const double value : first.values) {
            const CAudioParamDataItem* item = first.data.findValue(value);
            change.values.add(item ? change.data.add(CPtr<CAudioParamDataItem>(item->clone()))
                                   : value);
        }
        change.elementCount += first.elementCount;
    }
    change.group = group;
    change.complete = true;
    applyChange(change, source, context);
}

bool CAudioParam::applyChange(CAudioParamChange& change, const void* source,
                              CAudioParamContext* context)
{
    CAudioParamLock hold(*this);
    const CAudioParamInfo* present = info.load();
    if (!present || !(change.shape == present->shape) || !change.isValid())
        return false;
    // The engine sees a change and what filters made of it at one time.
    CTransaction transaction(collector, context);
    makeChange(change, source, transaction.get());
    return true;
}

// The whole road of a change; the lock is held and the change is valid.
void CAudioParam::makeChange(CAudioParamChange& change, const void* source,
                             CAudioParamContext& context)
{
    change.normalize();
    recordBefore(change, context);
    CAudioParamChange applied(change);
    values.apply(applied);
    recordAfter(change, context);
    ++serial;
    ++collector.changeCount;
    for (int i = 0; i < taps.getCount(); ++i)
        taps[i]->onChangeMade(source, *this, change);
    collector.notifyChange(source, *this, change);
    if (filters.isEmpty()) {
        addRecord(change, *context.batch);
        return;
    }
    CAudioParamChange cause(change);
    addRecord(change, *context.batch);
    runFilters(cause, context);
}

bool CAudioParam::isRecorded(const CAudioParamContext& context) const
{
    const CAudioParamInfo* present = info.load();
    return context.undo && (present->isStorable || present->isPersistent);
}

void CAudioParam::recordBefore(const CAudioParamChange& change,
                               const CAudioParamContext& context) const
{
    if (!isRecorded(context))
        return;
    if (change.group != kAllParamGroups) {
        const bool isHeld = values.getElementCount(change.group) > 0;
        context.undo->recordBefore(name, change.group, values, !isHeld);
        return;
    }
    for (int group = 0; group < values.getGroupCount(); ++group)
        context.undo->recordBefore(name, group, values, false);
    if (values.getGroupCount() == 0)
        context.undo->recordBefore(name, 0, values, true);
}

void CAudioParam::recordAfter(const CAudioParamChange& change,
                              const CAudioParamContext& context) const
{
    if (!isRecorded(context))
        return;
    if (change.group != kAllParamGroups) {
        context.undo->recordAfter(name, change.group, values, false);
        return;
    }
    for (int group = 0; group < kMaxParamGroups; ++group)
        context.undo->recordAfter(name, group, values, group >= values.getGroupCount());
}

// `change` is left without values.
void CAudioParam::addRecord(CAudioParamChange& change, CAudioParamBatch& batch)
{
    auto* record = new CAudioParamRecord;
    record->param = this;
    record->serial = serial.load();
    record->change = std::move(change);
    batch.add(record);
}

// All values as they are now, for an engine that may have others; the lock is held.
void CAudioParam::addAllRecords(CAudioParamBatch& batch)
{
    CAudioParamChange change;
    values.copyFallback(change);
    addRecord(change, batch);
    for (int group = 0; group < values.getGroupCount(); ++group) {
        values.copyGroup(group, change);
        addRecord(change, batch);
    }
}

void CAudioParam::runFilters(const CAudioParamChange& change, CAudioParamContext& context)
{
    for (int i = 0; i < filters.getCount(); ++i)
        filters[i]->run(change, context);
}

double CAudioParam::value(std::int32_t group, std::int32_t element, double otherwise,
                          std::int32_t subValue) const
{
    CLockScope hold(lock);
    return values.value(group, element, otherwise, subValue);
}

CString CAudioParam::text(std::int32_t group, std::int32_t element) const
{
    CLockScope hold(lock);
    return values.text(group, element);
}

CByteBuffer CAudioParam::raw(std::int32_t group, std::int32_t element) const
{
    CLockScope hold(lock);
    const CByteBuffer* block = values.raw(group, element);
    return block ? *block : CByteBuffer();
}

bool CAudioParam::hasValues() const
{
    CLockScope hold(lock);
    return values.getHasValues();
}

CError* CAudioParam::saveValues(COutputStream& stream) const
{
    CLockScope hold(lock);
    TSM_TRY(values.save(stream));
    return nullptr;
}

CError* CAudioParam::saveValues(COutputStream& stream, std::int32_t group) const
{
    CLockScope hold(lock);
    TSM_TRY(values.saveGroup(stream, group));
    return nullptr;
}

CError* CAudioParam::loadValues(CInputStream& stream, std::int32_t group, const void* source,
                                CAudioParamContext* context)
{
    CAudioParamLock hold(*this);
    if (!info.load())
        return nullptr;
    const bool isForAll = group == kAllParamGroups;
    COwnedArray<CAudioParamChange> changes;
    TSM_TRY(values.load(stream, isForAll ? -1 : group, name, changes));
    if (changes.isEmpty())
        return nullptr;
    for (CAudioParamChange& change : changes)
        clampToLimits(change);
    CTransaction transaction(collector, context);
    for (int i = changes.getCount(); isForAll && i < values.getGroupCount(); ++i) {
        if (values.getElementCount(i) == 0)
            continue;
        CAudioParamChange& emptied = changes.create();
        emptied.group = i;
        emptied.complete = true;
        emptied.shape = values.getShape();
    }
    for (CAudioParamChange& change : changes)
        applyChange(change, source, &transaction.get());
    return nullptr;
}

// A damaged number would reach the loudspeakers as it is.
void CAudioParam::clampToLimits(CAudioParamChange& change) const
{
    const CAudioParamInfo& present = *info.load();
    const std::int32_t size = present.shape.elementSize;
    if (present.shape.dataType != EAudioParamType::Number)
        return;
    for (int i = 0; i < change.values.getCount(); ++i) {
        double& number = change.values[i];
        const auto [low, high] =
            std::minmax(present.minValues[i % size], present.maxValues[i % size]);
        if (!std::isfinite(number))
            number = values.value(change.group, change.firstElement + i / size, low, i % size);
        number = std::clamp(number, low, high);
    }
}

void CAudioParam::addListener(CParamListener& listener)
{
    listener.attach(&collector.notifier, CAudioParamCollector::listenerKey(*this));
}

CAudioParamSubscriptionPtr CAudioParam::subscribe(std::uint32_t* dirtyGroups, bool* changed,
                                                  std::int32_t group, std::int32_t element)
{
    assert(group >= -1 && group < kMaxParamGroups);
    if (!processValues.getHasValues()) {
        // Records on their way to here are applied on top of this in order, and end with the same.
        CLockScope hold(lock);
        processValues = values;
    }
    CAudioParamSubscriptionPtr subscription(new CAudioParamSubscription);
    subscription->param = this;
    subscription->values = &processValues;
    subscription->group = group;
    subscription->element = element;
    subscription->dirtyGroups = dirtyGroups;
    subscription->changed = changed;
    subscriptions.add(subscription.get());
    const auto held = (std::uint64_t(1) << processValues.getGroupCount()) - 1;
    *dirtyGroups |= group == -1 ? static_cast<std::uint32_t>(held) : 1u << group;
    return subscription;
}

void CAudioParam::unsubscribe(CAudioParamSubscription* subscription)
{
    const int index = subscriptions.indexOf(subscription);
    assert(index >= 0);
    subscriptions.remove(index);
    delete subscription;
}

void CAudioParam::applyToProcess(CAudioParamChange& change)
{
    if (!processValues.apply(change))
        return;
    for (const CAudioParamSubscription* subscription : subscriptions)
        if (subscription->matches(change, processValues.getShape()))
            subscription->mark(change);
}

void CAudioParam::addFilter(CAudioParamFilter& filter)
{
    filters.add(&filter);
}

void CAudioParam::removeFilter(CAudioParamFilter& filter)
{
    const int index = filters.indexOf(&filter);
    if (index >= 0)
        filters.remove(index);
}

void CAudioParam::removeTap(CParamTap& tap)
{
    const int index = taps.indexOf(&tap);
    if (index >= 0)
        taps.remove(index);
}

} // namespace tsm
