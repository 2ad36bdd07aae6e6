#pragma once

#include "Audio/CAudioVizSource.h"
#include "Core/CMap.h"
#include "Core/CObject.h"
#include "Core/COwnedArray.h"
#include "Core/CUpdateNotifier.h"
#include "Platform/CCriticalSection.h"

namespace tsm {

class CAudioEnv;
class CAudioParamCollector;
class CAudioParamDef;

/// What the processes of one instance have measured for its windows, and who watches. Tag
/// `audio:viz-collector`.
///
/// A process posts records; a window asks for all that are there at once. A process that nobody
/// watches is switched off by its parameter `<process>-enable`, on which its links in the graph
/// hang. Of each source at most kMaxRecords wait, the latest ones, so a window that stopped asking
/// costs no more.
///
/// No two of its locks are held at once: the environment's (what changes of listeners wait, times,
/// rate), the queue's (records), the sources'.
class CAudioVizCollector : public CObject, public CUpdateNotifier {
public:
    static constexpr int kMaxRecords = 1024; // of a source

    static void declareClass(CObjectClassInfo& info);
    /// Errors: `env` or `param-collector` that name no such object, no definition
    /// `audio.param-enable-viz` in the shared tree.
    [[nodiscard]] CError* init() override;

    // Listeners

    /// The source of a process's full name, made when it is new; never removed. [any]
    [[nodiscard]] CAudioVizSource& getSource(const CString& name);
    /// One listener more, or one fewer, from the next block on. [any]
    void addListener(CAudioVizSource& source) { changeListeners(source, 1); }
    void removeListener(CAudioVizSource& source) { changeListeners(source, -1); }

    // The audio thread

    /// Takes the changes of listeners that wait; the caller holds the environment's lock. [audio]
    void takePending() noexcept;
    /// Applies what was taken, outside of that lock: the first listener of a source switches its
    /// process on, the last one off and drops its records. The graph hears of it by the queue of
    /// parameter changes. [audio] Takes the lock of the process's parameter.
    void applyPending();
    /// Takes a record over; it ends at once when nobody watches, and the oldest of too many does.
    /// [audio] Holds the queue lock for a few instructions; no allocation.
    void post(CAudioVizSource& source, CPtr<CAudioVizData> record);

    // The windows

    /// Writes all records that wait, and takes `rate`, the frames a second that the window shows,
    /// for meters that follow it (unless it is no number above 0). The form: f64 end of the block
    /// last run in seconds; for each source with records in order of names u32 count, string name,
    /// the records, each u32 type, u32 size of the body, body; u32 0. Errors: the stream's; what
    /// was taken is lost then. [any] but the audio thread
    [[nodiscard]] CError* writeStream(COutputStream& stream, double rate);
    /// Drops all records; listeners stay. [any]
    void reset();

private:
    struct CTaken : CTsmMemAllocator {
        CAudioVizSource* source = nullptr;
        CAudioVizRecords records;
    };
    using CTakenList = COwnedArray<CTaken>;

    void changeListeners(CAudioVizSource& source, std::int32_t delta);
    void applyDelta(CAudioVizSource& source, std::int32_t delta);
    [[nodiscard]] CAudioVizSource* findSource(const CString& name) const;
    void takeRecords(CTakenList& list);
    [[nodiscard]] CError* writeSource(COutputStream& stream, CTaken& from);
    [[nodiscard]] CError* writeRecord(COutputStream& stream, const CAudioVizData& record);

    CTarget<CAudioEnv*> env;
    CTarget<CAudioParamCollector*> paramCollector;
    CAudioParamDef* enableDef = nullptr; // in the shared tree

    mutable CCriticalSection sourcesLock{4000};
    CMap<CString, CPtr<CAudioVizSource>> sources;

    // Sources whose listeners have changed. The links lie in them, so that nothing is allocated
    // under the lock.
    CAudioVizSource* pending = nullptr; // guarded by the environment's lock
    CAudioVizSource* taken = nullptr;   // audio thread

    CCriticalSection queueLock{50}; // guards the records of all sources
};

} // namespace tsm
