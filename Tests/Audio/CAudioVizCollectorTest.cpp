#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/CVizStream.h"

#include <atomic>
#include <bit>
#include <limits>
#include <thread>

namespace tsm {
namespace {

constexpr const char* kName = "plugin.modTest"; // of no process: the records are the test's alone

CPtr<CAudioVizData> meterRecord(double time, double rms = 0.0, double peak = 0.0)
{
    auto* record = new CAudioVizDataMeter;
    record->time = time;
    record->rms = rms;
    record->peak = peak;
    return CPtr<CAudioVizData>(record);
}

void appendF64(CBytes& to, double value)
{
    const auto bits = std::bit_cast<std::uint64_t>(value);
    appendU32(to, static_cast<std::uint32_t>(bits));
    appendU32(to, static_cast<std::uint32_t>(bits >> 32));
}

void appendText(CBytes& to, const std::string& text)
{
    appendU32(to, static_cast<std::uint32_t>(text.size()));
    to.insert(to.end(), text.begin(), text.end());
}

class AVizCollector : public AnInstance {
protected:
    void SetUp() override
    {
        AnInstance::SetUp();
        viz = &wrapper->getVizCollector();
        source = &viz->getSource(kName);
        enable = wrapper->getParamCollector().find(CString(kName) + "-enable");
        ASSERT_NE(enable, nullptr);
        begin();
    }
    void block() { process(CChannel(64, 0.0), 64); }
    [[nodiscard]] bool isOn() const { return enable->value(0, 0) == 1.0; }
    CAudioVizCollector* viz = nullptr;
    CAudioVizSource* source = nullptr;
    CAudioParam* enable = nullptr;
};

TEST_F(AVizCollector, SwitchesASourceByItsListenersAtTheNextBlock)
{
    EXPECT_EQ(&viz->getSource(kName), source);
    viz->addListener(*source);
    EXPECT_FALSE(isOn());
    block();
    EXPECT_TRUE(isOn());
    viz->addListener(*source);
    viz->removeListener(*source); // nothing in the end
    block();
    EXPECT_TRUE(isOn());
    viz->addListener(*source);
    block();
    viz->removeListener(*source);
    block();
    EXPECT_TRUE(isOn());
    viz->post(*source, meterRecord(1.0));
    viz->removeListener(*source);
    viz->removeListener(*source); // one too many isn't remembered
    block();
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(requestLevels(*viz).empty());
    viz->addListener(*source);
    block();
    EXPECT_TRUE(isOn());
}

TEST_F(AVizCollector, KeepsTheLatestRecordsOfAWatchedSourceUntilTheyAreAskedFor)
{
    viz->post(*source, meterRecord(-1.0));
    EXPECT_TRUE(requestLevels(*viz).empty());
    viz->addListener(*source);
    block();
    constexpr int kPosted = CAudioVizCollector::kMaxRecords + 7;
    for (int i = 0; i < kPosted; ++i)
        viz->post(*source, meterRecord(i));
    const std::vector<CSeenLevel> seen = requestLevels(*viz);
    ASSERT_EQ(seen.size(), 1024u);
    for (std::size_t i = 0; i < seen.size(); ++i)
        EXPECT_EQ(seen[i].time, static_cast<double>(i) + 7.0);
    EXPECT_TRUE(requestLevels(*viz).empty());

    viz->post(*source, meterRecord(1.0));
    wrapper->stopProcessing();
    EXPECT_TRUE(requestLevels(*viz).empty());
    wrapper->startProcessing();
    viz->post(*source, meterRecord(2.0)); // its listeners are still there
    EXPECT_EQ(requestLevels(*viz).size(), 1u);
}

TEST_F(AVizCollector, WritesTheFormThatWindowsRead)
{
    CBytes wanted;
    appendF64(wanted, wrapper->getEnvironment().blockEndTime);
    CBytes empty = wanted;
    appendU32(empty, 0);
    EXPECT_EQ(requestVizBytes(*viz), empty);

    viz->addListener(*source);
    block();
    CPtr<CAudioVizData> record = meterRecord(1.5, 0.25, 0.75);
    record->index = 1;
    record->group = 2;
    record->element = 3;
    record->slot = 4; // belongs to nobody's slot here
    viz->post(*source, std::move(record));
    wanted.clear();
    appendF64(wanted, wrapper->getEnvironment().blockEndTime);
    appendU32(wanted, 1);
    appendText(wanted, kName);
    for (const std::uint32_t word : {0u, 40u, 1u, 2u, 3u})
        appendU32(wanted, word);
    appendF64(wanted, 1.5);
    appendU32(wanted, 0xFFFFFFFF);
    appendF64(wanted, 0.25);
    appendF64(wanted, 0.75);
    appendU32(wanted, 0);
    EXPECT_EQ(requestVizBytes(*viz), wanted);
}

TEST_F(AVizCollector, TakesTheRateOfTheWindowAndLosesWhatCannotBeSent)
{
    (void)requestVizBytes(*viz, 24.0);
    EXPECT_EQ(wrapper->getEnvironment().vizRate, 24.0);
    for (const double bad : {0.0, -2.0, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity()})
        (void)requestVizBytes(*viz, bad);
    EXPECT_EQ(wrapper->getEnvironment().vizRate, 24.0);

    viz->addListener(*source);
    block();
    viz->post(*source, meterRecord(1.0));
    CRecordingOutput full;
    full.failAt = 5;
    EXPECT_FAILS_WITH(viz->writeStream(full, 30.0), "The disk is full.");
    EXPECT_TRUE(requestLevels(*viz).empty());
}

/// "now" 2.0, a source with a meter record between two of unknown types, another with one meter.
CBytes goodStream()
{
    const auto appendMeter = [](CBytes& to, double time) {
        for (const std::uint32_t word : {0u, 40u, 0u, 0u, 0u})
            appendU32(to, word);
        appendF64(to, time);
        appendU32(to, 0xFFFFFFFF);
        appendF64(to, 0.5);
        appendF64(to, 0.5);
    };
    const auto appendUnknown = [](CBytes& to, std::uint32_t type, std::uint32_t size) {
        appendU32(to, type);
        appendU32(to, size);
        to.resize(to.size() + size, 0xAA);
    };
    CBytes bytes;
    appendF64(bytes, 2.0);
    appendU32(bytes, 3);
    appendText(bytes, "a");
    appendUnknown(bytes, 3, 5);
    appendMeter(bytes, 1.0);
    appendUnknown(bytes, 77, 0);
    appendU32(bytes, 1);
    appendText(bytes, "b");
    appendMeter(bytes, 1.25);
    appendU32(bytes, 0);
    return bytes;
}

TEST(AVizReader, PassesOverRecordsThatItDoesNotKnow)
{
    CPlainInput in(goodStream());
    double now = 0.0;
    std::vector<CSeenLevel> seen;
    ASSERT_OK(readVizStream(in, now, seen));
    EXPECT_EQ(now, 2.0);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].source + seen[1].source, "ab");
    EXPECT_EQ(seen[0].time, 1.0);
    EXPECT_EQ(seen[1].time, 1.25);
    EXPECT_EQ(in.position, static_cast<int>(in.data.size()));
}

TEST(AVizReader, RefusesDamagedStreams)
{
    const CBytes good = goodStream();
    double now = 0.0;
    std::vector<CSeenLevel> seen;
    for (std::size_t size = 0; size < good.size(); ++size) {
        CPlainInput in(CBytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_FAILS_WITH(readVizStream(in, now, seen), "The plain stream has ended.");
        EXPECT_LE(in.largestRead, 40);
    }
    struct CRow {
        std::size_t at;
        std::uint32_t word;
        const char* error;
    };
    // Bytes 8, 21 and 34: count, size of the first and of the second record.
    for (const CRow& row : {
             CRow{8, 1025, "Invalid visualisation record count 1025."},
             CRow{8, 0xFFFFFFFF, "Invalid visualisation record count 4294967295."},
             CRow{21, 0x100001, "Invalid size 1048577 of a visualisation record of type 3."},
             CRow{21, 0xFFFFFFFF, "Invalid size 4294967295 of a visualisation record of type 3."},
             CRow{34, 39, "Invalid size 39 of a visualisation record of type 0."},
             CRow{34, 48, "Invalid size 48 of a visualisation record of type 0."},
             CRow{38, 256, "A visualisation record is of no possible channel."},
             CRow{42, 32, "A visualisation record is of no possible channel."},
             CRow{46, 65536, "A visualisation record is of no possible channel."},
             CRow{54, 0x7FF00000, "A visualisation record has no valid time."},
             CRow{66, 0x7FF80000, "A meter's value isn't finite."},
             CRow{4, 0xFFF00000, "The visualisation stream has no valid time."},
         }) {
        CBytes bytes = good;
        std::memcpy(bytes.data() + row.at, &row.word, sizeof row.word);
        CPlainInput in(bytes);
        EXPECT_FAILS_WITH(readVizStream(in, now, seen), row.error) << row.at;
    }
}

class AVizCollectorThreads : public AVizCollector {};

// One thread posts as the audio thread does, one asks as a window does, one switches
// a meter on and off.
TEST_F(AVizCollectorThreads, LoseNothingAndKeepTheOrder)
{
    constexpr int kBlocks = 4000;
    viz->addListener(*source);
    block();
    CAudioVizSource& meter = viz->getSource("plugin.modMain.modMeterOut");
    std::atomic<bool> isDone = false;
    std::atomic<int> seenCount = 0;
    std::thread visitor([&] {
        while (!isDone) {
            viz->addListener(meter);
            std::this_thread::yield();
            viz->removeListener(meter);
        }
    });
    std::vector<double> times;
    std::thread window([&] {
        while (seenCount < kBlocks) {
            for (const CSeenLevel& each : requestLevels(*viz))
                if (each.source == kName)
                    times.push_back(each.time);
            seenCount = static_cast<int>(times.size());
        }
    });
    for (int i = 0; i < kBlocks; ++i) {
        // The window may be kept from the processor for longer than its records wait.
        while (i - seenCount >= CAudioVizCollector::kMaxRecords)
            std::this_thread::yield();
        if (i % 16 == 0)
            block();
        viz->post(*source, meterRecord(i));
    }
    window.join();
    isDone = true;
    visitor.join();
    ASSERT_EQ(times.size(), static_cast<std::size_t>(kBlocks));
    for (std::size_t i = 0; i < times.size(); ++i)
        ASSERT_EQ(times[i], static_cast<double>(i));
}

} // namespace
} // namespace tsm
