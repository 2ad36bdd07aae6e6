#include "Audio/VST/CBusRequest.h"
#include "Audio/VST/CSpeakerTable.h"
#include "Audio/VST/Interfaces/Speakers.h"

#include <gtest/gtest.h>

namespace tsm {

namespace {

constexpr std::uint64_t kMono = 0x80000;
constexpr std::uint64_t kStereo = 0x3;
constexpr std::uint64_t kSurround = 0x3F; // 5.1

struct CCase {
    const char* what;
    CBusRequest wanted;
    int maxChannels;
    bool isSymmetric;
    CBusRequest given;
    bool isAccepted;
};

class BusRequests : public testing::TestWithParam<CCase> {};

TEST_P(BusRequests, Settle)
{
    const CCase& known = GetParam();
    CBusRequest request = known.wanted;
    EXPECT_EQ(request.settle(known.maxChannels, known.isSymmetric), known.isAccepted);
    EXPECT_EQ(request.input, known.given.input);
    EXPECT_EQ(request.output, known.given.output);
    EXPECT_EQ(request.sidechain, known.given.sidechain);
}

INSTANTIATE_TEST_SUITE_P(
    OfAHost, BusRequests,
    testing::Values(
        CCase{"stereo", {kStereo, kStereo, 0}, 2, true, {kStereo, kStereo, 0}, true},
        CCase{"mono", {kMono, kMono, 0}, 2, true, {kMono, kMono, 0}, true},
        CCase{"one left", {1, 1, 0}, 2, true, {1, 1, 0}, true},
        CCase{"three", {0x103, kStereo, 0}, 2, true, {kStereo, kStereo, 0}, false},
        CCase{"none", {0, kStereo, 0}, 2, true, {kStereo, kStereo, 0}, false},
        CCase{"nothing out", {kMono, 0, 0}, 2, true, {kMono, kMono, 0}, false},
        CCase{"widening", {kMono, kStereo, 0}, 2, true, {kStereo, kStereo, 0}, false},
        CCase{"narrowing", {kStereo, kMono, 0}, 2, true, {kStereo, kStereo, 0}, false},
        CCase{"allowed to widen", {kMono, kStereo, 0}, 2, false, {kMono, kStereo, 0}, true},
        CCase{"folding", {kStereo, kMono, 0}, 2, false, {kMono, kStereo, 0}, false},
        CCase{"surround", {kSurround, kSurround, 0}, 8, true, {kSurround, kSurround, 0}, true},
        CCase{"to ten", {0x3FF, 0x3FF, 0}, 8, true, {0x63F, 0x63F, 0}, false},
        CCase{"keyed", {kStereo, kStereo, kMono}, 2, true, {kStereo, kStereo, kMono}, true},
        CCase{"too wide a key", {kStereo, kStereo, 0x7}, 2, true, {kStereo, kStereo, 0x3}, false}),
    [](const testing::TestParamInfo<CCase>& known) {
        std::string name = known.param.what;
        std::erase(name, ' ');
        return name;
    });

TEST(TheSpeakers, HaveAsManyLabelsAsChannels)
{
    for (int channels = 1; channels <= CSpeakerTable::kMaxChannels; ++channels) {
        const std::uint64_t arrangement = CSpeakerTable::findArrangement(channels);
        EXPECT_EQ(Steinberg::Vst::SpeakerArr::getChannelCount(arrangement), channels);
        COwnedArray<CString> labels;
        CSpeakerTable::listLabels(arrangement, labels);
        ASSERT_EQ(labels.getCount(), channels);
        for (const CString& label : labels)
            EXPECT_FALSE(label.isEmpty());
    }
}

TEST(TheSpeakers, AreNamedFromTheLowestBit)
{
    COwnedArray<CString> labels;
    CSpeakerTable::listLabels(0x63F | 1ull << 19 | 1ull << 40, labels);
    std::string all;
    for (const CString& label : labels)
        all += label.toUtf8() + ",";
    EXPECT_EQ(all, "L,R,C,Lfe,Ls,Rs,Sl,Sr,M,,");
}

} // namespace

} // namespace tsm
