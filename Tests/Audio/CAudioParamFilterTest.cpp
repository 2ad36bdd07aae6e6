#include "Tests/Support/CParamTree.h"

namespace tsm {

namespace {

/// The sum of its first two sources, and copies for further destinations.
class CSumFilter : public CAudioParamFilter {
public:
    int minSrcCount() const noexcept override { return 2; }
    int minDstCount() const noexcept override { return 1; }
    int compute(const CSlots& src, std::int32_t group, std::int32_t element,
                double* results) const override
    {
        results[0] = src[0].values->value(group, element) + src[1].values->value(group, element);
        return 1;
    }
};

class AParamFilter : public AParamTree {
protected:
    void TearDown() override
    {
        filter.reset(); // before its collector
        AParamTree::TearDown();
    }
    CPtr<CAudioParamFilter> build(const char* tag, const char* src, const char* dst)
    {
        CAudioParamFilterDef* def = nullptr;
        EXPECT_OK(create(def, *definitions, tag, "f", {{"src", src}, {"dst", dst}}));
        CPtr<CAudioParamFilter> made;
        EXPECT_OK(def->makeFilter(made, nullptr, *collector, "plugin.modMain"));
        return made;
    }
    static CTestAttrs single(const char* max, const char* def)
    {
        return converter("enum", {{"max-values", max},
                                  {"def-values", def},
                                  {"is-single-group", "true"},
                                  {"is-single-element", "true"}});
    }
    void makeOversampling()
    {
        mode = &param("oversampling", single("4", "2"));
        host = &param("host-oversampling-mode", single("3", "0"));
        bypass = &param("oversampling-bypass", single("1", "1"));
        filter = build("audio:param-filter-bypass-os", " oversampling , host-oversampling-mode ",
                       "oversampling-bypass");
    }
    CError* initWith(CAudioParamFilter& target, int srcCount, int dstCount)
    {
        COwnedArray<CString> src;
        COwnedArray<CString> dst;
        for (int i = 0; i < srcCount; ++i)
            src.create("a");
        for (int i = 0; i < dstCount; ++i)
            dst.create("b");
        return target.init(nullptr, *collector, src, dst);
    }

    CAudioParam* mode = nullptr;
    CAudioParam* host = nullptr;
    CAudioParam* bypass = nullptr;
    CPtr<CAudioParamFilter> filter;
};

} // namespace

TEST_F(AParamFilter, BypassesOversamplingThatNobodyAsksFor)
{
    makeOversampling();
    EXPECT_EQ(bypass->value(0, 0), 0.0) << "2X, right after the making";
    struct CRow {
        double mode;
        double host;
        double bypass;
    };
    for (const CRow& row : {CRow{1, 0, 1}, CRow{2, 0, 0}, CRow{0, 0, 1}, CRow{0, 1, 0},
                            CRow{1, 3, 1}, CRow{4, 0, 0}, CRow{0.4, 0.6, 0}, CRow{0.5, 1, 1}}) {
        SCOPED_TRACE(testing::Message() << row.mode << " " << row.host);
        host->setValue(0, 0, row.host);
        mode->setValue(0, 0, row.mode);
        EXPECT_EQ(bypass->value(0, 0), row.bypass);
        mode->setValue(0, 0, row.mode); // and in the other order
        host->setValue(0, 0, row.host);
        EXPECT_EQ(bypass->value(0, 0), row.bypass);
    }
}

TEST_F(AParamFilter, BypassesTheSoloStageWhileNoGroupIsSoloed)
{
    CAudioParam& solo = param("solo", {{"def-values", "0"}});
    CAudioParam& out = param("solo-bypass", single("1", "0"));
    filter = build("audio:param-filter-bypass-group-solo", "solo", "solo-bypass");
    EXPECT_EQ(out.value(0, 0), 1.0);
    solo.setValue(3, 0, 1.0);
    EXPECT_EQ(out.value(0, 0), 0.0);
    solo.setValue(1, 0, 0.6);
    solo.setValue(3, 0, 0.4);
    EXPECT_EQ(out.value(0, 0), 0.0);
    solo.setValue(1, 0, 0.0);
    EXPECT_EQ(out.value(0, 0), 1.0);
}

TEST_F(AParamFilter, WritesIntoTheBatchOfItsCause)
{
    makeOversampling();
    takeChanges();
    setProcessing(true);
    CAudioParamBatch batch;
    CAudioParamContext context;
    context.batch = &batch;
    mode->setValue(0, 0, 1.0, nullptr, &context);
    ASSERT_TRUE(batch.first());
    EXPECT_EQ(batch.first()->param, mode);
    ASSERT_TRUE(batch.first()->next);
    EXPECT_EQ(batch.first()->next->param, bypass);
    takeChanges();
    EXPECT_EQ(bypass->getProcessValues().value(0, 0), 0.0);
    collector->queueBatch(batch);
    takeChanges();
    EXPECT_EQ(bypass->getProcessValues().value(0, 0), 1.0);
    EXPECT_EQ(mode->getProcessValues().value(0, 0), 1.0);
}

TEST_F(AParamFilter, TellsOfItsCauseFirst)
{
    makeOversampling();
    std::vector<CAudioParam*> heard;
    const auto note = [&](CAudioParam& changed, const CAudioParamChange&) {
        EXPECT_EQ(bypass->value(0, 0), 1.0) << "all is done by then";
        heard.push_back(&changed);
    };
    CListenerRecorder onBypass(note);
    CListenerRecorder onMode(note);
    bypass->addListener(onBypass);
    mode->addListener(onMode);
    mode->setValue(0, 0, 1.0);
    EXPECT_EQ(heard, (std::vector<CAudioParam*>{mode, bypass}));
}

TEST_F(AParamFilter, WaitsForParametersThatHaveNoValues)
{
    filter = build("audio:param-filter-bypass-os", "oversampling,host-oversampling-mode",
                   "oversampling-bypass");
    mode = &param("oversampling", single("4", "1"));
    bypass = &param("oversampling-bypass", single("1", "0"));
    EXPECT_EQ(bypass->value(0, 0), 0.0);
    host = &param("host-oversampling-mode", single("3", "0"));
    EXPECT_EQ(bypass->value(0, 0), 1.0);
}

TEST_F(AParamFilter, LeavesItsSourcesWhenItGoes)
{
    makeOversampling();
    filter.reset();
    mode->setValue(0, 0, 1.0);
    EXPECT_EQ(bypass->value(0, 0), 0.0);
}

TEST_F(AParamFilter, WorksElementByElement)
{
    CAudioParam& a = param("a", {{"def-values", "1,2"}});
    CAudioParam& b = param("b", {{"def-values", "10,20,30"}});
    CAudioParam& sum = param("sum", {});
    CAudioParam& copy = param("copy", {});
    COwnedArray<CString> src;
    COwnedArray<CString> dst;
    for (const char* name : {"a", "b"})
        src.create(fullName(name));
    for (const char* name : {"sum", "copy"})
        dst.create(fullName(name));
    CSumFilter adder;
    ASSERT_OK(adder.init(nullptr, *collector, src, dst));
    adder.attach();
    EXPECT_EQ(sum.value(0, 2), 31.0) << "reads the first source's fallback";
    EXPECT_EQ(sum.getValues().getElementCount(0), 3);
    EXPECT_EQ(copy.value(0, 1), 20.0) << "the second source";
    a.setValue(1, 1, 5.0);
    EXPECT_EQ(sum.value(1, 1), 25.0);
    b.setValue(0, 0, 40.0);
    EXPECT_EQ(sum.value(0, 0), 41.0);
    EXPECT_EQ(copy.value(0, 0), 40.0);
}

TEST_F(AParamFilter, ChecksItsCounts)
{
    CSumFilter adder;
    EXPECT_FAILS_WITH(initWith(adder, 1, 0),
                      "Not enough source parameters 1 defined in the param filter (required 2).");
    EXPECT_FAILS_WITH(initWith(adder, 10, 0),
                      "Too many source parameters 10 defined in the param filter.");
    EXPECT_FAILS_WITH(
        initWith(adder, 9, 0),
        "Not enough destination parameters 0 defined in the param filter (required 1).");
    EXPECT_FAILS_WITH(initWith(adder, 9, 10),
                      "Too many destination parameters 10 defined in the param filter.");
    EXPECT_OK(initWith(adder, 9, 9));
    CAudioParamFilterDef* def = nullptr;
    EXPECT_FAILS_WITH(
        create(def, *definitions, "audio:param-filter-bypass-os", "f", {{"src", " , "}}),
        "No source parameters defined.");
    EXPECT_FAILS_WITH(
        create(def, *definitions, "audio:param-filter-bypass-os", "f", {{"src", "a"}}),
        "No destination parameters defined.");
}

} // namespace tsm
