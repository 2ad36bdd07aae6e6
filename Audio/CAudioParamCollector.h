#pragma once

#include "Audio/CAudioParam.h"
#include "Audio/CAudioParamBatch.h"
#include "Audio/CParamUpdateQueue.h"
#include "Core/CObject.h"
#include "Core/CUpdateNotifier.h"

#include <atomic>
#include <cstdint>

namespace tsm {

class CAudioEnv;
class CAppData;
class CAudioExtParamHostBridge;
class CAudioParamRegistry;
class CSharedParam;

/// The live parameters of one plug-in instance by full name, their queue to the audio thread, and
/// what is to be told of their changes.
///
/// Lock order: filter lock, a parameter's lock, notification lock or environment's lock.
class CAudioParamCollector : public CObject {
public:
    CAudioParamCollector();
    ~CAudioParamCollector() override;

    /// Finds the environment that the attribute `env` names, unless that is empty. Errors: no
    /// environment at that path.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);
    /// Names the environment where no document does. [setup]
    void setEnv(CAudioEnv* newEnv) noexcept { env = newEnv; }
    [[nodiscard]] CAudioEnv* getEnv() const noexcept { return env.get(); }

    /// The parameter of that full name, or null. [any]
    [[nodiscard]] CAudioParam* find(const CString& fullName) const;
    /// The same, made without a description when it is new. [any]
    [[nodiscard]] CAudioParam& findOrCreate(const CString& fullName);
    [[nodiscard]] int getParamCount() const;
    /// All parameters in order of their names, as they are now. [any]
    void listParams(CArray<CAudioParam*>& params) const;
    /// Keeps a description that no document owns as long as the parameters. [any]
    const CAudioParamInfo& adoptInfo(CPtr<CAudioParamInfo> info);
    /// Ties a parameter to the item `dataName` of a store from here on: it takes the stored value,
    /// and either follows the other. The same tie again changes nothing. The store outlives the
    /// collector. [any] Not from a listener or under a lock, and never on the audio thread, since
    /// it waits for the disk.
    void addSharedParam(const CString& fullName, CAppData& store, const CString& dataName);
    /// All changes of all parameters so far. [any]
    [[nodiscard]] std::uint64_t getChangeCount() const noexcept { return changeCount.load(); }

    // Registries

    /// Enters a registry, which leaves before either ends. [setup]
    void addRegistry(CAudioParamRegistry& registry, const CString& hierarchy);
    void removeRegistry(CAudioParamRegistry& registry);
    /// All registries, those of the longest hierarchies first. [any]
    void listRegistries(CArray<CAudioParamRegistry*>& list) const;

    // The road to the audio thread

    /// Queues all changes of a batch in one operation, which leaves it empty. A parameter that was
    /// changed beside the batch meanwhile is sent once more as it is now, so that the engine ends
    /// with the model's values. [any]
    void queueBatch(CAudioParamBatch& batch);
    /// Takes all queued changes; the caller holds the environment's lock. [audio]
    void takeQueue() noexcept;
    /// Applies what was taken, outside of the lock, and marks the subscribers. What is used up goes
    /// back at the next takeQueue() and is freed by the next who queues. [audio] No lock; allocates
    /// from the block allocator only.
    void applyQueue();

    // Notifications

    /// What listeners and the host are to be told.
    [[nodiscard]] CParamUpdateQueue& getUpdates() noexcept { return updates; }
    /// Has the host told of a value, on this thread, when the thread's holds are gone. `bridge`
    /// lives until then. [any]
    void addHostUpdate(CAudioExtParamHostBridge& bridge, std::int32_t index, double normalized);

private:
    struct CRegistryEntry {
        CAudioParamRegistry* registry;
        int hierarchyLength;
    };

    friend class CAudioParam;
    friend class CAudioParamFilter;

    /// Queues records without a look at what was changed beside them.
    void queueRecords(CAudioParamBatch& records);
    void notifyChange(const void* source, CAudioParam& param, const CAudioParamChange& change);
    [[nodiscard]] static std::uint64_t listenerKey(const CAudioParam& param) noexcept;
    void resendChanged(const CMap<CAudioParam*, std::uint64_t>& sent);

    CTarget<CAudioEnv*> env;
    mutable CCriticalSection mapLock{4000};
    CMap<CString, CAudioParam*> params;
    COwnedArray<CAudioParamInfo> ownInfos;
    COwnedArray<CSharedParam> sharedParams;
    std::atomic<std::uint64_t> changeCount = 0;
    CCriticalSection filterLock{50};
    mutable CCriticalSection registriesLock{4000};
    CArray<CRegistryEntry> registries; // the longest hierarchies first

    // Guarded by the environment's lock.
    CAudioParamBatch queue;
    CAudioParamBatch returned; // used up, to be freed off the audio thread
    // Audio thread.
    CAudioParamBatch taken;
    CAudioParamBatch applied;

    CUpdateNotifier notifier;
    CParamUpdateQueue updates;
};

/// Keeps a collector's notifications back for a scope.
class CAudioParamHold {
public:
    explicit CAudioParamHold(CAudioParamCollector& collector) : updates(collector.getUpdates())
    {
        updates.raiseHold();
    }
    ~CAudioParamHold() { updates.releaseHold(); }
    CAudioParamHold(const CAudioParamHold&) = delete;
    CAudioParamHold& operator=(const CAudioParamHold&) = delete;

private:
    CParamUpdateQueue& updates;
};

} // namespace tsm
