#include "Audio/CHostBuffers.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace tsm {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

std::vector<double> readChannel(const CHostInput& input, int channel, int frame, int count)
{
    std::vector<double> out(static_cast<std::size_t>(count), -7.0);
    input.read(channel, frame, out.data(), count);
    return out;
}

TEST(HostInput, ReadsBothLayoutsAndSampleTypes)
{
    const double left[] = {0.0, 0.1, 0.2, 0.3};
    const double right[] = {1.0, 1.1, 1.2, 1.3};
    const void* const apart[] = {left, right};
    const CHostInput separate(apart, {2, true, false});
    EXPECT_EQ(readChannel(separate, 1, 1, 3), (std::vector<double>{1.1, 1.2, 1.3}));

    const float frames[] = {0.0F, 1.0F, 0.25F, 1.25F, 0.5F, 1.5F};
    const void* const together[] = {frames};
    const CHostInput interleaved(together, {2, false, true});
    EXPECT_EQ(readChannel(interleaved, 1, 1, 2), (std::vector<double>{1.25, 1.5}));
}

TEST(HostInput, ReadsSilenceWhereTheHostGivesNothingUsable)
{
    const double samples[] = {0.5, kInf, std::numeric_limits<double>::quiet_NaN(), -kInf, -0.5};
    const void* const buffers[] = {samples, nullptr};
    const CHostInput input(buffers, {2, true, false});
    EXPECT_EQ(readChannel(input, 0, 0, 5), (std::vector<double>{0.5, 0.0, 0.0, 0.0, -0.5}));
    EXPECT_EQ(readChannel(input, 1, 0, 2), (std::vector<double>{0.0, 0.0}));
    EXPECT_EQ(readChannel(CHostInput(nullptr, {1, false, true}), 0, 0, 1),
              (std::vector<double>{0.0}));
}

TEST(HostOutput, WritesOnlyItsChannelAndSkipsMissingOnes)
{
    float frames[] = {9, 9, 9, 9, 9, 9};
    void* const together[] = {frames};
    const CHostOutput interleaved(together, {2, false, true});
    const double samples[] = {0.5, -0.5};
    interleaved.write(1, 1, samples, 2);
    interleaved.silence(0, 0, 1);
    EXPECT_EQ(std::vector<float>(frames, frames + 6),
              (std::vector<float>{0.0F, 9, 9, 0.5F, 9, -0.5F}));

    double right[] = {9, 9};
    void* const apart[] = {nullptr, right};
    const CHostOutput separate(apart, {2, true, false});
    separate.write(0, 0, samples, 2);
    separate.write(1, 0, samples, 2);
    EXPECT_EQ(right[1], -0.5);
}

TEST(HostOutput, KnowsWhatTheHostsFormatHolds)
{
    const double large[] = {0.0, 1e39};
    const double broken[] = {0.0, std::numeric_limits<double>::quiet_NaN()};
    const CHostOutput doubles(nullptr, {1, true, false});
    const CHostOutput floats(nullptr, {1, false, false});
    EXPECT_TRUE(doubles.canHold(large, 2));
    EXPECT_FALSE(floats.canHold(large, 2));
    EXPECT_TRUE(floats.canHold(large, 1));
    EXPECT_FALSE(doubles.canHold(broken, 2));
}

} // namespace
} // namespace tsm
