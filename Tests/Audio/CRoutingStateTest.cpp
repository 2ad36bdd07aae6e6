#include "Audio/CRoutingState.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace tsm {
namespace {

CArray<int> numbers(std::initializer_list<int> values)
{
    CArray<int> array;
    for (const int value : values)
        array.add(value);
    return array;
}

std::vector<int> listOf(const CArray<int>& array)
{
    return {array.begin(), array.end()};
}

std::vector<std::string> listOf(const COwnedArray<CString>& array)
{
    std::vector<std::string> texts;
    for (const CString& text : array)
        texts.push_back(text.toUtf8());
    return texts;
}

/// The state with which an instance starts.
class ARoutingState : public testing::Test {
protected:
    void SetUp() override
    {
        state.inRouting = numbers({1, 2, 0, 0, 0, 0, 0, 0});
        state.outRouting = state.inRouting;
        state.grouping = numbers({0, 0, 1, 1, 2, 2, 3, 3});
        for (const char* name : {"1", "2", "3", "4", "5", "6", "7", "8"})
            state.groupNames.create(name);
    }
    static CHostChannelNames host(std::initializer_list<const char*> main,
                                  std::initializer_list<const char*> side = {})
    {
        CHostChannelNames names;
        for (const char* name : main)
            names.main.create(name);
        for (const char* name : side)
            names.sidechain.create(name);
        return names;
    }

    CRoutingState state;
};

TEST_F(ARoutingState, FollowsOneFormatAfterTheOther)
{
    ASSERT_TRUE(state.isUntouched());
    state.adapt(host({"M"}), 2);
    EXPECT_EQ(listOf(state.inRouting), (std::vector<int>{1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(listOf(state.grouping), (std::vector<int>{0, 0, 1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(state.groupNames[0], "MONO");
    ASSERT_TRUE(state.isUntouched());

    state.adapt(host({"L", "R", "C"}), 4);
    EXPECT_EQ(listOf(state.outRouting), (std::vector<int>{1, 2, 3, 0, 0, 0, 0, 0}));
    EXPECT_EQ(listOf(state.grouping), (std::vector<int>{0, 0, 0, 1, 2, 2, 3, 3}));
    EXPECT_EQ(listOf(state.channelNames), (std::vector<std::string>{"L", "R", "C"}));
    EXPECT_EQ(listOf(state.groupNames),
              (std::vector<std::string>{"MULTI", "G-2", "G-3", "G-4", "G-5", "G-6", "G-7", "G-8"}));
    ASSERT_TRUE(state.isUntouched());
    state.adapt(host({"L", "R"}), 2);
    EXPECT_EQ(state.groupNames[0], "STEREO");
    EXPECT_TRUE(state.isUntouched());
}

TEST_F(ARoutingState, KnowsTheTouchOfAUser)
{
    const auto isUntouchedWith = [&](auto change) {
        CRoutingState touched;
        touched.inRouting = state.inRouting;
        touched.outRouting = state.outRouting;
        touched.grouping = state.grouping;
        touched.groupNames = COwnedArray<CString>();
        for (const CString& name : state.groupNames)
            touched.groupNames.create(name);
        change(touched);
        return touched.isUntouched();
    };
    EXPECT_TRUE(isUntouchedWith([](CRoutingState& s) { s.groupNames[0] = "G-1"; }));
    EXPECT_TRUE(isUntouchedWith([](CRoutingState& s) { s.groupNames[4] = "G5"; }));
    EXPECT_FALSE(isUntouchedWith([](CRoutingState& s) { s.groupNames[1] = "Drums"; }));
    EXPECT_FALSE(isUntouchedWith([](CRoutingState& s) { s.groupNames[0] = "Stereo"; }));
    EXPECT_FALSE(isUntouchedWith([](CRoutingState& s) { s.inRouting = numbers({2, 1, 0, 0}); }));
    EXPECT_FALSE(isUntouchedWith([](CRoutingState& s) { s.inRouting[3] = 4; }));
    EXPECT_FALSE(isUntouchedWith([](CRoutingState& s) { s.outRouting[1] = 0; }));
    EXPECT_FALSE(isUntouchedWith([](CRoutingState& s) { s.grouping[1] = 1; }));
    EXPECT_FALSE(isUntouchedWith([](CRoutingState& s) { s.midSidePairs = numbers({1, 1}); }));
}

TEST_F(ARoutingState, SendsSidechainChannelsToTheDetectorsOnly)
{
    state.sidechain = numbers({0, 1, 2, 3, 4, 5, 6, 7});
    state.sidechainMute = numbers({0, 0, 0, 0, 0, 0, 0, 0});
    ASSERT_TRUE(state.isUntouched());
    state.adapt(host({"L", "R"}, {"scL", "scR"}), 4);
    EXPECT_EQ(listOf(state.sidechain), (std::vector<int>{2, 3, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(listOf(state.sidechainMute), (std::vector<int>{0, 0, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(listOf(state.outRouting), (std::vector<int>{1, 2, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(state.isUntouched());
    // One channel of side-chain feeds every detector.
    state.adapt(host({"L", "R"}, {"sc"}), 4);
    EXPECT_EQ(listOf(state.sidechain), (std::vector<int>{2, 2, 2, 3, 4, 5, 6, 7}));
    state.sidechainMute = numbers({1, 0, 1, 0, 0, 0, 0, 0});
    EXPECT_FALSE(state.isUntouched());
}

} // namespace
} // namespace tsm
