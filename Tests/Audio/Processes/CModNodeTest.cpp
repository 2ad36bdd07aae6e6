#include "Tests/Support/CProcessTree.h"

namespace tsm::test {

namespace {

class ANode : public AProcess {};

TEST_F(ANode, HandsOnBlocksAndFormat)
{
    startProcess("audio:modNode", {});
    setFormat({0, 1}, 96000.0, 17);
    const CAudioPort& out = run({{0.25, -0.5}, {1.0, 0.0}});
    ASSERT_EQ(out.getChannelCount(), 2);
    EXPECT_EQ(out.getChannel(0).buffer, sent[0]);
    EXPECT_EQ(out.getChannel(1).buffer, sent[1]);
    EXPECT_EQ(out.getChannel(1).group, 1u);
    EXPECT_EQ(sink->getSampleRate(), 96000.0);
}

TEST_F(ANode, IsPassedByTheLatencyThatTheOutputReports)
{
    startProcess("audio:modNode", {});
    setFormat({0}, 96000.0, 17);
    run({{0.25, -0.5}});
    EXPECT_EQ(env->latency, 17);
    setFormat({0}, 96000.0, 4);
    run({{0.25, -0.5}});
    EXPECT_EQ(env->latency, 4);
}

} // namespace

} // namespace tsm::test
