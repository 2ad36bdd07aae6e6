#include "Tools/rtaudit/CAuditKinds.h"

#include "Audio/CAudioEnv.h"
#include "Core/CWriteSeqBuffer.h"
#include "Tools/rtaudit/CLockHolds.h"
#include "Tools/rtaudit/CRealtimePriority.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace tsm {
namespace {

constexpr int kWarmUpRounds = 24;
constexpr int kCountedRounds = 24;
constexpr std::chrono::microseconds kPause{500};
constexpr int kActionSamples = 4096; // longer than any crossfade and the latency before it

void nothing(CAuditEngine&, int) {}

/// Values of a parameter in turn, as a user's edit.
CAuditKind::CAction setting(const char* name, const std::vector<double>& values)
{
    return [name, values](CAuditEngine& engine, int round) {
        engine.set(name, values[static_cast<std::size_t>(round) % values.size()]);
    };
}

/// Values in turn, as automation.
CAuditKind::CAction automating(const char* name, const std::vector<double>& values)
{
    return [name, values](CAuditEngine& engine, int round) {
        engine.queue(name, values[static_cast<std::size_t>(round) % values.size()]);
    };
}

CAuditKind::CAction once(const char* name, double value)
{
    return [name, value](CAuditEngine& engine, int) { engine.set(name, value); };
}

constexpr const char* kResampler = "audio:modResampler";
constexpr const char* kConvolver = "audio:modBankedConvolver";
constexpr const char* kMeter = "audio:modMeter";
constexpr const char* kNoiseSeed = "CNoiseSeed"; // of every new module that makes noise

// What a change made by the audio thread takes: the values, and what others are to be told.
const std::set<std::string> kChangeLocks{"a parameter", "CAudioParamCollector", "CUpdateNotifier",
                                         kNoiseSeed};

std::vector<CAuditKind> makeKinds()
{
    const std::set<std::string> seeds{kNoiseSeed};
    // It names an impulse, which is looked up.
    std::set<std::string> impulseLocks = kChangeLocks;
    impulseLocks.insert("CBankedImpulseCache");
    const std::vector<double> modes{0.0, 1.0, 2.0, 3.0, 4.0};
    const std::vector<double> onOff{1.0, 0.0};
    return {
        {"steady", nullptr, nothing, nothing, {}, 16},
        {"parameter of one module", nullptr, nothing, setting("modOutGain.gain", {0.7, 1.0, 1.4}),
         seeds},
        {"parameter of the tape", nullptr, nothing, setting("modReelpath.mode", modes), seeds},
        {"host's automation", nullptr, nothing, automating("modReelpath.recgain", {1.0, 1.5, 2.0}),
         kChangeLocks},
        {"bypass on and off", nullptr, nothing, setting("bypass-enable", onOff), seeds},
        {"group solo, graph rebuilt", nullptr, nothing,
         setting("io-params.channel-group-solo", onOff), kChangeLocks},
        {"latencies made equal", nullptr, nothing, setting("lp-oversampling-enable", onOff),
         kChangeLocks},
        {"steady, meters watched",
         kMeter,
         [](CAuditEngine& engine, int) { engine.watchMeters(true); },
         [](CAuditEngine& engine, int) { engine.takeMeterData(); },
         {},
         32},
        {"meters' settings", kMeter, nothing,
         [](CAuditEngine& engine, int round) {
             engine.takeMeterData();
             engine.set("meter-rmstime", round % 2 ? 0.002 : 0.1);
         },
         kChangeLocks},
        {"meters on and off", kMeter, nothing,
         [](CAuditEngine& engine, int round) {
             engine.takeMeterData();
             engine.watchMeters(round % 2 == 0);
         },
         kChangeLocks},
        // Some choose another factor of oversampling, which rebuilds the chain.
        {"preset", nullptr, nothing,
         [](CAuditEngine& engine, int round) { engine.selectProgram(round % 6); }, impulseLocks, 8,
         true},
        {"impulse", kConvolver, nothing, setting("modReelpath.cab-index", {1.0, 2.0, 3.0}),
         kChangeLocks, 8, true},
        {"impulse on and off", kConvolver, nothing, setting("modReelpath.cab-enable", onOff),
         kChangeLocks, 8, true},
        {"oversampling", kResampler, nothing, setting("oversampling", {2.0, 3.0, 4.0, 1.0}),
         kChangeLocks, 16, true},
        {"steady at 8X", kResampler, once("oversampling", 4.0), nothing, {}, 16},
        {"parameter of the tape at 8X", kResampler, nothing, setting("modReelpath.mode", modes),
         seeds},
        {"steady at 1X again", kResampler, once("oversampling", 1.0), nothing, {}, 16},
        {"host's format", nullptr, nothing,
         [](CAuditEngine& engine, int round) {
             engine.setFormat(1 + round % 2, round % 3 ? 44100.0 : 48000.0);
         },
         kChangeLocks, 8, true},
        {"steady beside a busy control thread", nullptr,
         [](CAuditEngine& engine, int) { engine.setFormat(2, CAuditEngine::kRate); }, nothing,
         seeds, 64, false, true},
    };
}

/// The control side at full speed on a thread of its own: edits, questions, states.
class CBusyControl {
public:
    explicit CBusyControl(CAuditEngine& engine)
        : thread([this, &engine] {
              for (int i = 0; !isEnding; ++i)
                  work(engine, i);
          })
    {
        CLockHolds::watch(&engine.getWrapper().getEnvironment().lock);
    }
    ~CBusyControl()
    {
        isEnding = true;
        thread.join();
        CLockHolds::watch(nullptr);
    }
    CBusyControl(const CBusyControl&) = delete;
    CBusyControl& operator=(const CBusyControl&) = delete;

private:
    static void work(CAuditEngine& engine, int i)
    {
        engine.set("modOutGain.gain", 0.1 * (i % 50));
        engine.set("modReelpath.hardness", i % 100);
        (void)engine.getWrapper().queryLatency();
        if (i % 16)
            return;
        CWriteSeqBuffer buffer;
        handleError(engine.getWrapper().saveState(buffer));
    }

    std::atomic<bool> isEnding = false;
    std::thread thread;
};

void takeWorst(CAuditCounts& worst, const CAuditCounts& counts)
{
    worst.allocations = std::max(worst.allocations, counts.allocations);
    worst.frees = std::max(worst.frees, counts.frees);
    worst.refills = std::max(worst.refills, counts.refills);
    worst.systemCalls = std::max(worst.systemCalls, counts.systemCalls);
    worst.pageFaults = std::max(worst.pageFaults, counts.pageFaults);
}

void enter(const CAuditEngine& engine, const CAuditCounts& counts, CAuditRow& row)
{
    ++row.blocks;
    takeWorst(row.worst, counts);
    row.worstAcquisitions = std::max(row.worstAcquisitions, counts.acquisitions());
    row.worstWaits = std::max(row.worstWaits, counts.waits());
    row.waits += counts.waits();
    for (int i = 0; i < counts.lockCount; ++i) {
        const CLockCounts& lock = counts.locks[static_cast<std::size_t>(i)];
        row.longWaits += lock.longWaits;
        if (lock.longestWaitNs > row.longestWaitNs) {
            row.longestWaitNs = lock.longestWaitNs;
            row.asideNs = lock.asideNs;
        }
        if (lock.acquisitions == 0)
            continue;
        const std::string owner = engine.lockOwner(lock);
        row.lockOwners.insert(owner);
        if (lock.waits > 0)
            row.waitedOwners.insert(owner);
    }
    const auto calls =
        std::min(static_cast<std::size_t>(counts.systemCalls), counts.firstCalls.size());
    row.systemCalls.insert(counts.firstCalls.begin(),
                           counts.firstCalls.begin() + static_cast<std::ptrdiff_t>(calls));
}

void runRounds(CAuditEngine& engine, const CAuditKind& kind, CAuditRow& row)
{
    const int blocks = std::max(kind.blocksEach, kActionSamples / engine.getBlockSize());
    for (int round = 0; round < kWarmUpRounds + kCountedRounds; ++round) {
        kind.act(engine, round);
        for (int block = 0; block < blocks; ++block) {
            CAuditCounts counts;
            const bool isCounted = round >= kWarmUpRounds;
            // The blocks of a host leave time to others, and begin at moments of their own.
            if (kind.isBeside)
                std::this_thread::sleep_for(kPause);
            engine.process(isCounted ? &counts : nullptr);
            if (isCounted)
                enter(engine, counts, row);
        }
    }
}

bool isOfHandOver(const std::string& owner)
{
    return owner == "CAudioEnv" || owner == "CAudioVizCollector";
}

} // namespace

const std::vector<CAuditKind>& auditKinds()
{
    static const std::vector<CAuditKind> kinds = makeKinds();
    return kinds;
}

bool runAudit(CAuditEngine& engine, const CAuditKind& kind, CAuditRow& row)
{
    if (kind.tag && !engine.hasTag(kind.tag))
        return false;
    row = {};
    row.name = kind.name;
    row.isHeavy = kind.isHeavy;
    row.mayLock = kind.mayLock;
    kind.prepare(engine, 0);
    engine.settle();
    if (kind.isBeside) {
        const CBusyControl control(engine);
        const CRealtimePriority priority; // behind the thread that must not inherit it
        row.isRealtime = priority.isGranted();
        runRounds(engine, kind, row);
        row.foreignHolds = CLockHolds::getCount();
        row.longestForeignHoldNs = CLockHolds::getLongestNs();
        row.meanForeignHoldNs = CLockHolds::getTotalNs() / std::max(row.foreignHolds, 1);
    } else {
        runRounds(engine, kind, row);
    }
    engine.settle();
    return true;
}

std::string auditVerdict(const CAuditRow& row)
{
    std::string beyond;
    const auto note = [&](bool isBeyond, const std::string& what) {
        if (isBeyond)
            beyond += (beyond.empty() ? "" : ", ") + what;
    };
    if (row.isHeavy)
        return beyond;
    for (const std::string& owner : row.lockOwners)
        note(!isOfHandOver(owner) && !row.mayLock.contains(owner), "locks " + owner);
    note(row.worst.allocations > 0, "allocates");
    note(row.worst.frees > 0, "frees");
    note(row.worst.refills > 0, "refills pools");
    // A contended lock of a hand-over puts one to sleep, and wakes the other.
    note(row.worst.systemCalls > 0 && row.waits == 0, "calls the system");
    return beyond;
}

} // namespace tsm
