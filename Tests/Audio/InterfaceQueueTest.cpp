#include "Tests/Support/CInterfaceRig.h"

namespace tsm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kMaxBlocks = CParamInterfaceBaseConnectorUni::kMaxBlocks;
constexpr auto kMaxBytes = static_cast<int>(CParamInterfaceBaseConnectorUni::kMaxBytes);

using AQueue = AnInterface;

CBytes blockOf(std::size_t size)
{
    return CBytes(size, 1);
}

TEST_F(AQueue, OfAClientThatDoesNotComeStaysBounded)
{
    CTestClient away(instance->getRoot());
    CTestClient present(instance->getRoot());
    CRecordingParam ofAway(*away.client);
    CRecordingParam ofPresent(*present.client);
    CRecordingParam names(*away.client);
    CRecordingRegistry programs;
    away.listen("modReelpath.recgain", ofAway);
    away.listen("io-params.group-names", names);
    away.listen("plugin.param-registry", programs);
    present.listen("modReelpath.recgain", ofPresent);
    CAudioParam& gain = param("modReelpath.recgain");
    for (int i = 0; i < 3 * kMaxBlocks; ++i) {
        gain.setValue(0, 0, 1.0 + i % 100 / 100.0);
        if (i % 1000 == 0) {
            ASSERT_OK(present.tick());
        }
    }
    EXPECT_EQ(connector->getBlockCount(1), kMaxBlocks);
    instance->getParamRegistry().selectProgram(4, nullptr);
    param("io-params.group-names").setText(0, 2, "Late");
    instance->setSampleRate(22050.0);
    const std::uint32_t listener = present.listen("modReelpath.emphasis", ofPresent);
    const std::uint32_t step = present.openStep("late edit");
    ASSERT_OK(present->changeParam(listener, step,
                                   shapedLike(param("modReelpath.emphasis"), numbers({3.0}))));
    ASSERT_OK(present->submitUndoData(step));

    // Once it comes, it has what is: at one tick, and then goes on.
    ASSERT_OK(away.tick());
    EXPECT_EQ(connector->getBlockCount(1), 0);
    EXPECT_EQ(ofAway.value(), gain.value(0, 0));
    EXPECT_EQ(names.text(2), "Late");
    EXPECT_EQ(away->getSampleRate(), 22050.0);
    EXPECT_THAT(away.history(), ElementsAre("Undo history start", "late edit", "at 1"));
    EXPECT_EQ(programs.notes.back().rfind("factory gplu", 0), 0U);
    EXPECT_NE(programs.notes[programs.notes.size() - 2].find("session gplu 4"), std::string::npos);
    ofAway.takeNotes();
    gain.setValue(0, 0, 1.0);
    ASSERT_OK(away.tick());
    EXPECT_THAT(ofAway.takeNotes(), ElementsAre("group 0 from 0 count 1"));
}

TEST_F(AQueue, CountsBytesToo)
{
    const CTestClient away(instance->getRoot());
    ASSERT_OK(away.tick());
    // One block may be larger than the whole.
    sendBytes(1, blockOf(2 * std::size_t(kMaxBytes)));
    EXPECT_EQ(connector->getBlockCount(1), 1);
    sendBytes(1, blockOf(1));
    EXPECT_EQ(connector->getBlockCount(1), 1);
    CInterfaceBlockList blocks;
    connector->takeBlocks(1, blocks);
    EXPECT_GT(blocks.getCount(), 5) << "and behind it all states";
    for (int i = 0; i < 6; ++i)
        sendBytes(1, blockOf(std::size_t(kMaxBytes) / 4));
    EXPECT_EQ(connector->getBlockCount(1), 4);
}

TEST_F(AQueue, GivesToAllOrOneOrNobody)
{
    const CTestClient first(instance->getRoot());
    const CTestClient second(instance->getRoot());
    ASSERT_OK(first.tick());
    ASSERT_OK(second.tick());
    sendBytes(CParamInterfaceBaseConnector::kAllClients, {1, 2, 3});
    sendBytes(2, {4});
    sendBytes(3, {5});
    sendBytes(1, {});
    sendBytes(CParamInterfaceBaseConnector::kAllClients, {});
    CInterfaceBlockList ofFirst;
    CInterfaceBlockList ofSecond;
    connector->takeBlocks(1, ofFirst);
    connector->takeBlocks(2, ofSecond);
    connector->takeBlocks(3, ofSecond);
    EXPECT_EQ(ofFirst.getCount(), 1);
    EXPECT_EQ(ofSecond.getCount(), 2);
    EXPECT_EQ(toBytes(ofFirst.takeFirst()->bytes), (CBytes{1, 2, 3}));
    EXPECT_EQ(toBytes(ofSecond.takeFirst()->bytes), (CBytes{1, 2, 3}));
    EXPECT_EQ(toBytes(ofSecond.takeFirst()->bytes), (CBytes{4}));
    EXPECT_FALSE(ofSecond.takeFirst());
}

/// Has the window's loop run once more while it takes a change.
class CReentrantParam : public CParamMirror {
public:
    explicit CReentrantParam(const CTestClient& client)
        : CParamMirror(*client.client), window(client)
    {
    }
    void onChange(CAudioParamChange& change) override
    {
        if (isArmed) {
            isArmed = false;
            EXPECT_OK(window.tick());
        }
        CParamMirror::onChange(change);
        order.push_back(getValues().value(0, 0));
    }
    bool isArmed = false;
    std::vector<double> order;

private:
    const CTestClient& window;
};

TEST_F(AQueue, KeepsItsOrderWhenAListenerRunsALoop)
{
    const CTestClient window(instance->getRoot());
    CReentrantParam gain(window);
    window.listen("modReelpath.recgain", gain);
    ASSERT_OK(window.tick());
    gain.order.clear();
    for (const double value : {1.5, 2.0, 2.5, 3.0})
        param("modReelpath.recgain").setValue(0, 0, value);
    gain.isArmed = true;
    ASSERT_OK(window.tick());
    EXPECT_EQ(gain.order, (std::vector<double>{1.5, 2.0, 2.5, 3.0}));
}

TEST_F(AQueue, DropsWhatStandsBehindADamagedBlock)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    window.listen("modReelpath.recgain", gain);
    ASSERT_OK(window.tick());
    gain.takeNotes();
    sendBytes(1, written([](COutputStream& out) { EXPECT_OK(writeFields(out, "no-message")); }));
    param("modReelpath.recgain").setValue(0, 0, 2.0);
    EXPECT_FAILS_WITH(window.tick(), "Unknown event 'no-message'.");
    EXPECT_THAT(gain.takeNotes(), IsEmpty());
    param("modReelpath.recgain").setValue(0, 0, 3.0);
    ASSERT_OK(window.tick());
    EXPECT_EQ(gain.value(), 3.0);
}

} // namespace
} // namespace tsm::test
