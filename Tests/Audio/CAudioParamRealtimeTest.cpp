#include "Tests/Support/CParamTree.h"
#include "Tests/Support/SystemAllocations.h"

namespace tsm {

namespace {

class TheAudioThread : public AParamTree {
protected:
    void SetUp() override
    {
        if (countSystemAllocations() < 0)
            GTEST_SKIP() << "allocations aren't counted in this build";
        AParamTree::SetUp();
    }
    static int allocationsOf(const std::function<void()>& work)
    {
        const int before = countSystemAllocations();
        work();
        return countSystemAllocations() - before;
    }
};

} // namespace

TEST_F(TheAudioThread, TakesChangesWithoutASystemAllocation)
{
    CAudioParam& gain = param("gain", {});
    CAudioParam& name = param("name", textParam("a"));
    takeChanges();
    setProcessing(true);
    std::uint32_t mask = 0;
    bool changed = false;
    CAudioParamSubscriptionPtr subscription;
    EXPECT_EQ(allocationsOf([&] { subscription = gain.subscribe(&mask, &changed); }), 0);
    gain.setValue(5, 200, 1.0);
    gain.setValue(kAllParamGroups, 0, 2.0);
    gain.reset(kAllParamGroups, -1);
    name.setText(3, 40, "a text that doesn't fit into the object itself, and so lies elsewhere");
    name.reset(kAllParamGroups, -1);
    EXPECT_EQ(allocationsOf([&] { takeChanges(); }), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(gain.getProcessValues().getGroupCount(), 1);
    EXPECT_EQ(allocationsOf([&] { subscription.reset(); }), 0);
    EXPECT_GT(allocationsOf([] { static_cast<void>(std::make_unique<CLogCollector>()); }), 0)
        << "the count works";
}

TEST_F(TheAudioThread, WritesHostParametersWithoutASystemAllocation)
{
    param("gain", {});
    CAudioExtParam* gain = nullptr;
    ASSERT_OK(create(gain, *root->findChild("plugin"), "audio:ext-param", "p",
                     {{"param-collector", "plugin.param-collector"},
                      {"param-name", "plugin.modMain.gain"},
                      {"ext-name", "Gain"}}));
    setProcessing(true);
    takeChanges();
    gain->setNormalized(0.1); // the allocator's pool has blocks of all sizes from here on
    takeChanges();
    EXPECT_EQ(allocationsOf([&] {
                  for (int i = 0; i < 100; ++i) {
                      gain->setNormalized(0.001 * i);
                      takeChanges();
                  }
              }),
              0);
    EXPECT_NEAR(param("gain").getProcessValues().value(0, 0), 9.9, 1e-12);
}

} // namespace tsm
