#include "Audio/CVizDelivery.h"

#include "Audio/CAudioVizDataMeter.h"
#include "Audio/CVizListener.h"
#include "Core/CMemoryReader.h"
#include "Other/CInterfaceFields.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"

#include <cmath>
#include <functional>

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CEar : public CVizListener {
public:
    void onData(const CAudioVizData& record) override
    {
        levels.push_back(dynamic_cast<const CAudioVizDataMeter&>(record).rms);
        if (then)
            then();
    }
    void onInactive() override { ++inactiveCount; }
    std::vector<double> takeLevels() { return std::exchange(levels, {}); }

    std::vector<double> levels;
    int inactiveCount = 0;
    std::function<void()> then;
};

struct CRecord {
    double time;
    double rms;
};

class ADelivery : public testing::Test {
protected:
    /// Four ticks are a timeout.
    CVizDelivery delivery{0.4, 10.0};
    CEar ear;

    void SetUp() override { delivery.addListener("out", ear); }

    /// The stream of a sender, as it is documented at CAudioVizCollector::writeStream().
    static CBytes streamOf(double now, const CString& name, const std::vector<CRecord>& records)
    {
        return written([&](COutputStream& out) {
            EXPECT_OK(writeFields(out, now));
            if (!records.empty()) {
                EXPECT_OK(writeFields(out, static_cast<std::uint32_t>(records.size()), name));
            }
            for (const CRecord& record : records)
                EXPECT_OK(writeFields(out, 0u, 40u, 0u, 0u, 0u, record.time, -1, record.rms, 1.0));
            EXPECT_OK(writeFields(out, 0u));
        });
    }
    CError* read(const CBytes& bytes)
    {
        CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
        return delivery.readVizData(reader);
    }
    void receive(double now, const std::vector<CRecord>& records = {}, const char* name = "out")
    {
        EXPECT_OK(read(streamOf(now, name, records)));
    }
    void tick(int count)
    {
        for (int i = 0; i < count; ++i)
            delivery.tick();
    }
};

TEST_F(ADelivery, HandsOnRecordsByNameWhenTheSendersClockHasReachedThem)
{
    CEar other;
    delivery.addListener("diff", other);
    receive(1.0, {{0.9, 0.1}, {3.0, 0.4}, {2.0, 0.3}, {1.0, 0.2}});
    receive(1.1, {{1.1, 0.5}}, "diff");
    receive(1.2, {{1.1, 0.6}}, "none");
    EXPECT_THAT(ear.takeLevels(), ElementsAre(0.1, 0.2));
    EXPECT_THAT(other.levels, ElementsAre(0.5));
    receive(2.0, {{1.5, 0.7}});
    EXPECT_THAT(ear.takeLevels(), ElementsAre(0.3, 0.7)); // what waited goes first
    receive(9.0);
    EXPECT_THAT(ear.takeLevels(), ElementsAre(0.4));
    receive(10.0);
    EXPECT_THAT(ear.takeLevels(), IsEmpty());
}

TEST_F(ADelivery, TellsOnceOfEachSilenceAndNotWhileNothingIsSent)
{
    tick(3);
    receive(1.0, {{1.0, 0.1}});
    tick(4);
    EXPECT_EQ(ear.inactiveCount, 0);
    tick(5);
    EXPECT_EQ(ear.inactiveCount, 1);
    receive(2.0, {{2.0, 0.1}});
    delivery.stopViz();
    tick(9);
    EXPECT_EQ(ear.inactiveCount, 1);
    delivery.startViz();
    tick(5);
    EXPECT_EQ(ear.inactiveCount, 2);
}

TEST_F(ADelivery, ForgetsWhatWaitsWhenItIsVoid)
{
    receive(1.0, {{2.0, 0.1}});
    delivery.clear();
    EXPECT_EQ(ear.inactiveCount, 1);
    receive(9.0);
    tick(9);
    EXPECT_THAT(ear.levels, IsEmpty());
    EXPECT_EQ(ear.inactiveCount, 1);
}

TEST_F(ADelivery, LetsListenersComeAndGoInsideOfACall)
{
    CEar second;
    delivery.addListener("out", second);
    ear.then = [&] { delivery.removeListener(ear); };
    second.then = [&] { delivery.clear(); };
    receive(1.0, {{0.1, 0.1}, {0.2, 0.2}, {2.0, 0.3}});
    receive(3.0);
    tick(9);
    EXPECT_THAT(ear.levels, ElementsAre(0.1));
    EXPECT_THAT(second.levels, ElementsAre(0.1, 0.2, 0.3));
    EXPECT_EQ(ear.inactiveCount, 0);
}

TEST_F(ADelivery, KeepsTheLatestOfTooManyThatWait)
{
    constexpr int kBatch = 1000;
    for (int batch = 0; batch < 5; ++batch) {
        std::vector<CRecord> records;
        for (int i = 0; i < kBatch; ++i)
            records.push_back({10.0 + batch * kBatch + i, 1.0 * batch * kBatch + i});
        receive(1.0, records);
    }
    receive(1e9);
    ASSERT_EQ(ear.levels.size(), std::size_t{CVizDelivery::kMaxWaiting});
    EXPECT_EQ(ear.levels.front(), 5.0 * kBatch - CVizDelivery::kMaxWaiting);
    EXPECT_EQ(ear.levels.back(), 5.0 * kBatch - 1.0);
}

TEST_F(ADelivery, HandsOnWhatStoodBeforeTheDamage)
{
    CBytes bytes = streamOf(1.0, "out", {{0.5, 0.1}, {0.6, 0.2}});
    bytes.resize(bytes.size() - 8);
    EXPECT_NE(takeMessage(read(bytes)), "");
    EXPECT_THAT(ear.levels, ElementsAre(0.1));
}

} // namespace
} // namespace tsm
