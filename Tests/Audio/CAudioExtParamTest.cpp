#include "Audio/CAudioExtParamList.h"
#include "Tests/Support/CParamTree.h"

#include <cmath>
#include <limits>
#include <thread>

namespace tsm {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using CEdit = std::pair<int, double>;

class CHostRecorder : public CAudioExtParamHostBridge {
public:
    void performEdit(std::int32_t index, double value) override
    {
        edits.emplace_back(index, value);
    }
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}
    std::vector<CEdit> takeEdits() { return std::exchange(edits, {}); }

private:
    std::vector<CEdit> edits;
};

class AHostParameter : public AParamTree {
protected:
    void SetUp() override
    {
        AParamTree::SetUp();
        ASSERT_OK(create(list, plugin(), "audio:ext-param-list", "ext-param-list", {}));
    }
    CObject& plugin() { return *root->findChild("plugin"); }
    CError* define(CAudioExtParam*& made, const char* paramName, const CTestAttrs& more = {})
    {
        CTestAttrs attrs = {{"param-collector", "plugin.param-collector"},
                            {"param-name", "plugin.modMain." + std::string(paramName)},
                            {"ext-name", "Name"}};
        attrs.insert(attrs.end(), more.begin(), more.end());
        return create(made, *list, "audio:ext-param", "ext-param", attrs);
    }
    CAudioExtParam& hostParam(const char* paramName, const CTestAttrs& more = {})
    {
        CAudioExtParam* made = nullptr;
        EXPECT_OK(define(made, paramName, more));
        EXPECT_OK(list->initChilds());
        made->setHostBridge(&host, list->getCount() - 1);
        return *made;
    }
    CAudioParam& enumParam(const char* name)
    {
        return param(name, converter("enum", {{"max-values", "4"}, {"def-values", "2"}}));
    }

    CHostRecorder host;
    CAudioExtParamList* list = nullptr;
};

} // namespace

TEST_F(AHostParameter, HasAShortNameAndAPlace)
{
    CAudioExtParam* made = nullptr;
    for (const char* name : {"Hardness", ""})
        EXPECT_FAILS_WITH(define(made, "a", {{"ext-name", name}}),
                          "Externalized parameter name '" + std::string(name) + "' is too long");
    EXPECT_OK(define(made, "a", {{"ext-name", "RecGain"}}));
    EXPECT_FAILS_WITH(define(made, "a", {{"group", "32"}}),
                      "Invalid group 32 or element index 0 specified.");
    EXPECT_FAILS_WITH(define(made, "a", {{"element-index", "-1"}}),
                      "Invalid group 0 or element index -1 specified.");
    EXPECT_FALSE(takeLines(define(made, "a", {{"param-collector", "plugin"}})).empty());
}

TEST_F(AHostParameter, IsNumberedInTheDocumentsOrder)
{
    hostParam("a");
    hostParam("b");
    make(*list, "core:object", "none-of-them");
    ASSERT_OK(list->initChilds());
    ASSERT_EQ(list->getCount(), 2);
    EXPECT_EQ((*list)[1].getParam().getName(), fullName("b"));
    EXPECT_EQ((*list)[1].getIndex(), 1);
}

TEST_F(AHostParameter, TellsChangesOfItsValueAlone)
{
    CAudioParam& gain = param("gain", {{"def-values", "10,20,30"}});
    CAudioExtParam& seen = hostParam("gain", {{"group", "1"}, {"element-index", "2"}});
    EXPECT_EQ(seen.normalized(), 0.3);
    gain.setValue(0, 2, 50.0);
    gain.setValue(1, 1, 50.0);
    gain.setValue(1, 3, 50.0);
    gain.setValue(1, 2, 30.0); // what it was
    EXPECT_THAT(host.takeEdits(), IsEmpty());
    const double three[] = {1.0, 2.0, 60.0};
    gain.setValues(1, 0, three, 3);
    EXPECT_THAT(host.takeEdits(), ElementsAre(CEdit{0, 0.6}));
    gain.setValues(1, 0, three, 1, nullptr, nullptr, true); // element 2 reads as group 0's now
    EXPECT_THAT(host.takeEdits(), ElementsAre(CEdit{0, 0.3}));
    gain.setValue(kAllParamGroups, 2, 70.0);
    EXPECT_THAT(host.takeEdits(), ElementsAre(CEdit{0, 0.7}));
    EXPECT_EQ(seen.normalized(), 0.7);
}

TEST_F(AHostParameter, FollowsAParameterThatIsDescribedLater)
{
    CAudioExtParam& seen = hostParam("mode");
    EXPECT_EQ(seen.normalized(), 0.0);
    EXPECT_EQ(seen.valueText(0.5), "");
    EXPECT_TRUE(seen.setNormalized(0.75)); // ignored by what has no values yet
    enumParam("mode");
    EXPECT_EQ(seen.normalized(), 0.5);
    EXPECT_EQ(seen.defaultNormalized(), 0.5);
}

TEST_F(AHostParameter, TakesTheHostsValuesWithoutAnEcho)
{
    CAudioParam& gain = param("gain", {});
    CAudioExtParam& seen = hostParam("gain");
    EXPECT_TRUE(seen.setNormalized(0.5));
    EXPECT_EQ(gain.value(0, 0), 50.0);
    EXPECT_EQ(seen.normalized(), 0.5);
    EXPECT_THAT(host.takeEdits(), IsEmpty());
    gain.setValue(0, 0, 0.0); // back: news to the host
    EXPECT_THAT(host.takeEdits(), ElementsAre(CEdit{0, 0.0}));
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {std::nan(""), infinity, -infinity})
        EXPECT_FALSE(seen.setNormalized(bad));
    EXPECT_EQ(gain.value(0, 0), 0.0);
    seen.setNormalized(1.5);
    EXPECT_EQ(seen.normalized(), 1.0);
    seen.setNormalized(-0.5);
    EXPECT_EQ(gain.value(0, 0), 0.0);
    const auto changes = collector->getChangeCount();
    seen.setNormalized(0.0);
    EXPECT_EQ(collector->getChangeCount(), changes) << "a repeated value makes no change";
}

TEST_F(AHostParameter, KeepsTheHostsValueBetweenTwoStates)
{
    CAudioParam& mode = enumParam("mode");
    CAudioExtParam& seen = hostParam("mode");
    seen.setNormalized(0.3);
    EXPECT_EQ(mode.value(0, 0), 1.0);
    EXPECT_EQ(seen.normalized(), 0.3);
    mode.setValue(0, 0, 1.0); // the value that it has
    EXPECT_THAT(host.takeEdits(), IsEmpty());
    mode.setValue(0, 0, 3.0);
    EXPECT_THAT(host.takeEdits(), ElementsAre(CEdit{0, 0.75}));
}

TEST_F(AHostParameter, TellsTheChangesOfATransactionInOrder)
{
    CAudioParam& gain = param("gain", {});
    CAudioParam& tone = param("tone", {});
    CAudioExtParam& first = hostParam("gain");
    hostParam("tone");
    {
        const CAudioParamLock hold(gain);
        gain.setValue(0, 0, 10.0);
        tone.setValue(0, 0, 20.0);
        gain.setValue(0, 0, 30.0);
        EXPECT_THAT(host.takeEdits(), IsEmpty());
    }
    EXPECT_THAT(host.takeEdits(), ElementsAre(CEdit{0, 0.1}, CEdit{1, 0.2}, CEdit{0, 0.3}));
    {
        // The host's own value, behind a change of ours, is the last word.
        const CAudioParamLock hold(gain);
        gain.setValue(0, 0, 10.0);
        first.setNormalized(0.9);
    }
    EXPECT_THAT(host.takeEdits(), IsEmpty());
    EXPECT_EQ(first.normalized(), 0.9);
}

TEST_F(AHostParameter, SpeaksTheParametersTexts)
{
    param("gain", converter("gain", {{"min-values", "-12"}, {"max-values", "12"}}));
    CAudioExtParam& gain = hostParam("gain");
    EXPECT_EQ(gain.valueText(0.5), "0.0");
    EXPECT_EQ(gain.valueText(7.0), "12.0");
    double value = 0.25;
    EXPECT_FALSE(gain.parseText("loud", value));
    EXPECT_EQ(value, 0.25);
    EXPECT_TRUE(gain.parseText("-12", value));
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(gain.parseText("100", value)) << "outside is brought inside";
    EXPECT_EQ(value, 1.0);

    param("name", textParam("a"));
    CAudioExtParam& name = hostParam("name");
    EXPECT_EQ(name.valueText(0.5), "");
    EXPECT_FALSE(name.parseText("1", value));
    name.setNormalized(0.5);
    EXPECT_EQ(param("name").text(0, 0), "a");
}

TEST_F(AHostParameter, SetsOneOfSeveralNumbers)
{
    CAudioParam& point = param("point", {{"element-size", "2"},
                                         {"converter2", "shared::audio.paramcvt.real"},
                                         {"min-values", "0 0"},
                                         {"max-values", "100 100"},
                                         {"def-values", "1 2"}});
    hostParam("point").setNormalized(0.5);
    EXPECT_EQ(point.value(0, 0), 50.0);
    EXPECT_EQ(point.value(0, 0, 0.0, 1), 2.0);
}

class HostParameterThreads : public AHostParameter {};

TEST_F(HostParameterThreads, EndWithTheValueOfTheParameter)
{
    class CLastEdit : public CHostRecorder {
    public:
        void performEdit(std::int32_t, double value) override { last = value; }
        std::atomic<double> last = -1.0;
    } lastEdit;
    CAudioParam& gain = param("gain", {});
    CAudioExtParam& seen = hostParam("gain");
    seen.setHostBridge(&lastEdit, 0);
    setProcessing(true);
    for (int round = 0; round < 20; ++round) {
        std::thread audio([&] {
            for (int i = 0; i < 300; ++i) {
                seen.setNormalized(0.001 * (i % 100));
                takeChanges();
            }
        });
        std::thread control([&] {
            for (int i = 0; i < 300; ++i)
                gain.setValue(0, 0, 50.0 + i % 40);
        });
        for (int i = 0; i < 300; ++i)
            EXPECT_LE(seen.normalized(), 1.0);
        audio.join();
        control.join();
        EXPECT_NEAR(seen.normalized(), gain.value(0, 0) / 100.0, 1e-15);
        // A value of ours, from 0.5 on, is there only if the host was told of it as the last.
        if (seen.normalized() >= 0.5) {
            EXPECT_EQ(lastEdit.last.load(), seen.normalized());
        }
    }
}

} // namespace tsm
