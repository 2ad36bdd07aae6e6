#pragma once

#include "Audio/CAudioParamContext.h"
#include "Audio/CAudioParamInfo.h"
#include "Audio/CAudioParamSubscription.h"
#include "Platform/CCriticalSection.h"

#include <atomic>
#include <cstdint>

namespace tsm {

class CAudioParamBatch;
class CAudioParamCollector;
class CAudioParamFilter;
class CAudioParamLock;
class CParamListener;
class CParamTap;
struct CAudioParamRecord;

/// A live parameter. It is made once by its collector, lives as long as that, and is never removed.
///
/// The model side (`values`) is changed by any thread, under the parameter's lock. Each change then
/// goes, as a record, through the collector's queue to the process side (`processValues`), which
/// belongs to the audio thread. A parameter without a description ignores changes and reads as
/// the caller's default.
///
/// The order of a change: undo image, values, second image, taps, notification (kept until the
/// locks are released), record for the engine, filters.
class CAudioParam : public CCheckedObject, public CTsmMemAllocator {
public:
    /// Used by the collector.
    CAudioParam(CAudioParamCollector& owner, const CString& fullName);
    CAudioParam(const CAudioParam&) = delete;
    CAudioParam& operator=(const CAudioParam&) = delete;
    ~CAudioParam();

    [[nodiscard]] const CString& getName() const noexcept { return name; }
    [[nodiscard]] CAudioParamCollector& getCollector() const noexcept { return collector; }
    /// The description, or null. One that is replaced stays valid with its owner. [any]
    [[nodiscard]] const CAudioParamInfo* getInfo() const noexcept { return info.load(); }
    /// Counts the changes of this parameter. [any]
    [[nodiscard]] std::uint64_t getSerial() const noexcept { return serial.load(); }

    /// Gives the parameter its description, which is borrowed and outlives the collector, and its
    /// defaults. Nothing happens for one of the same name and shape as the present. [any]
    void attachInfo(const CAudioParamInfo& newInfo, CAudioParamContext* context = nullptr);

    // Changes: one call is one change. `source` is an identity for listeners, may be null. [any]

    /// Sets `elementCount` elements of elementSize numbers each, from `firstElement` on, in one
    /// group or in all (kAllParamGroups); with `complete` the group holds nothing else.
    void setValues(std::int32_t group, std::int32_t firstElement, const double* newValues,
                   std::int32_t elementCount, const void* source = nullptr,
                   CAudioParamContext* context = nullptr, bool complete = false);
    /// Sets the first number of one element; others that it has stay.
    void setValue(std::int32_t group, std::int32_t element, double newValue,
                  const void* source = nullptr, CAudioParamContext* context = nullptr);
    void setText(std::int32_t group, std::int32_t element, const CString& newText,
                 const void* source = nullptr, CAudioParamContext* context = nullptr);
    void setRaw(std::int32_t group, std::int32_t element, const void* bytes, int count,
                const void* source = nullptr, CAudioParamContext* context = nullptr);
    /// Back to the defaults: one element (-1: all) of one group, or of all groups.
    void reset(std::int32_t group, std::int32_t element, const void* source = nullptr,
               CAudioParamContext* context = nullptr);
    /// All elements of one group, or of all groups, to the default of the first.
    void resetToFirst(std::int32_t group, const void* source = nullptr,
                      CAudioParamContext* context = nullptr);
    /// Makes a change as it stands. An invalid one, or one of another shape, is ignored. The
    /// change is used up. Tells whether it was made.
    bool applyChange(CAudioParamChange& change, const void* source = nullptr,
                     CAudioParamContext* context = nullptr);

    // Reading the model side [any]

    [[nodiscard]] double value(std::int32_t group, std::int32_t element, double otherwise = 0.0,
                               std::int32_t subValue = 0) const;
    [[nodiscard]] CString text(std::int32_t group, std::int32_t element) const;
    [[nodiscard]] CByteBuffer raw(std::int32_t group, std::int32_t element) const;
    [[nodiscard]] bool hasValues() const;
    /// The values themselves, for those who hold the lock (CAudioParamLock).
    [[nodiscard]] const CAudioParamStorage& getValues() const noexcept { return values; }

    /// Writes the values, all groups or one.
    [[nodiscard]] CError* saveValues(COutputStream& stream) const;
    [[nodiscard]] CError* saveValues(COutputStream& stream, std::int32_t group) const;
    /// Brings a change's numbers inside the limits, and those that aren't finite to what the values
    /// read; for those who hold the lock. The change is valid and of this shape.
    void clampToLimits(CAudioParamChange& change) const;
    /// Replaces the values, of all groups (kAllParamGroups) or of one, by saved ones; a group that
    /// was held and isn't saved is emptied; numbers are brought inside the limits. See
    /// CAudioParamStorage::load for what doesn't fit. On an error nothing has changed.
    [[nodiscard]] CError* loadValues(CInputStream& stream, std::int32_t group, const void* source,
                                     CAudioParamContext* context);

    /// Enters a listener for this parameter's changes. [any]
    void addListener(CParamListener& listener);

    /// Enters one who is told within each change; the caller holds the lock. It leaves before it
    /// goes.
    void addTap(CParamTap& tap) { taps.add(&tap); }
    void removeTap(CParamTap& tap);

    // Process side [audio], or [setup] with no audio thread

    /// Links a process to this parameter: each change that matches `group` and `element` (-1: all)
    /// sets `*changed` and bits in `*dirtyGroups`, both of which outlive the link. The bits
    /// of the groups that hold values are set at once (the one bit for a single group). A parameter
    /// that the audio thread hasn't seen yet takes over the model's values here, for which alone
    /// the parameter's lock is taken.
    [[nodiscard]] CAudioParamSubscriptionPtr subscribe(std::uint32_t* dirtyGroups, bool* changed,
                                                       std::int32_t group = -1,
                                                       std::int32_t element = -1);
    /// Ends and deletes a subscription; for its holder.
    void unsubscribe(CAudioParamSubscription* subscription);
    /// The values that the engine uses.
    [[nodiscard]] const CAudioParamStorage& getProcessValues() const noexcept
    {
        return processValues;
    }
    /// Applies a change to the process side and marks the subscribers.
    void applyToProcess(CAudioParamChange& change);

    // Filters

    /// Enters a filter that has this parameter as a source; the caller holds the lock. The filter
    /// removes itself before it goes.
    void addFilter(CAudioParamFilter& filter);
    void removeFilter(CAudioParamFilter& filter);
    /// Has every holder of this parameter's lock take the collector's filter lock first, since
    /// filters lock several parameters. The caller holds that lock and this parameter's.
    void markFiltered() noexcept { isFiltered.store(true); }

private:
    class CTransaction;
    friend class CAudioParamCollector;
    friend class CAudioParamLock;

    /// Takes the lock, and before it the filter lock if that is needed; tells whether it was.
    bool enterLock() const;
    void leaveLock(bool hasFilterLock) const;
    void takeDefaults(const CAudioParamInfo& newInfo, CAudioParamContext& context);
    void makeChange(CAudioParamChange& change, const void* source, CAudioParamContext& context);
    void recordBefore(const CAudioParamChange& change, const CAudioParamContext& context) const;
    void recordAfter(const CAudioParamChange& change, const CAudioParamContext& context) const;
    [[nodiscard]] bool isRecorded(const CAudioParamContext& context) const;
    void addRecord(CAudioParamChange& change, CAudioParamBatch& batch);
    void addAllRecords(CAudioParamBatch& batch);
    void runFilters(const CAudioParamChange& change, CAudioParamContext& context);
    void setItem(std::int32_t group, std::int32_t element, CPtr<CAudioParamDataItem> item,
                 const void* source, CAudioParamContext* context);

    CAudioParamCollector& collector;
    CString name;
    mutable CCriticalSection lock{50};
    std::atomic<const CAudioParamInfo*> info = nullptr;
    std::atomic<bool> isFiltered = false;
    std::atomic<std::uint64_t> serial = 0;
    CAudioParamStorage values;
    CAudioParamStorage initial;
    CArray<CAudioParamFilter*, 2> filters;
    CArray<CParamTap*, 2> taps;

    CArray<CAudioParamSubscription*, 4> subscriptions; // audio thread
    CAudioParamStorage processValues;                  // audio thread
};

/// Holds a parameter's lock for a scope, and the collector's notifications: they go out when the
/// last such scope ends. Taking it again on the same thread is allowed.
class CAudioParamLock {
public:
    explicit CAudioParamLock(const CAudioParam& target);
    ~CAudioParamLock();
    CAudioParamLock(const CAudioParamLock&) = delete;
    CAudioParamLock& operator=(const CAudioParamLock&) = delete;

private:
    const CAudioParam& param;
    bool hasFilterLock;
};

} // namespace tsm
