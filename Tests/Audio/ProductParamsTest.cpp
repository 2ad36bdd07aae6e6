#include "Core/CText.h"
#include "Tests/Support/CParamTree.h"

#include <cmath>

namespace tsm {

namespace {

/// The shared tree of the product's own document; classes above this layer are plain objects.
class TheProductsParameters : public ATree {
protected:
    void SetUp() override
    {
        application = std::make_unique<CApplication>();
        ASSERT_OK(application->start(kParamCreators.begin(),
                                     static_cast<int>(kParamCreators.size()), kResourceTable,
                                     "SharedData.xml"));
        ASSERT_OK(application->initRootObject(root, CString()));
        env = &make<CAudioEnv>(*root.get(), "audio:audio-env", "audio-env");
        collector =
            &make<CAudioParamCollector>(*root.get(), "audio:param-collector", "param-collector");
        collector->setEnv(env);
        attachBelow("audio.modMain");
    }
    /// Registers what a process and its name scopes define, as the making of a process does.
    void attachBelow(const char* path)
    {
        CObject* parent = application->getSharedRoot()->findObject(path);
        ASSERT_NE(parent, nullptr);
        for (CObject* child : parent->getChildren()) {
            if (auto* def = dynamic_cast<CAudioParamDef*>(child))
                attach(*def);
            for (CObject* inner : child->getChildren())
                if (auto* def = dynamic_cast<CAudioParamDef*>(inner))
                    attach(*def);
        }
    }
    void attach(CAudioParamDef& def)
    {
        const CString relative = def.getFullName().substring(5); // behind "audio"
        if (def.hasStorage())
            collector->findOrCreate("plugin" + relative).attachInfo(def.getInfo());
    }
    CAudioParam& param(const char* name)
    {
        CAudioParam* found = collector->find(CString("plugin.modMain.") + name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    std::string shown(const char* name, double norm)
    {
        const CAudioParamInfo& info = *param(name).getInfo();
        CString out;
        const CAudioParamConverter& cvt = info.getConverter(0);
        cvt.format(out, info, 0, cvt.normToReal(info, 0, norm), EAudioParamFormat::Normal);
        return out.toUtf8();
    }

    CAudioEnv* env = nullptr;
    CAudioParamCollector* collector = nullptr;
};

} // namespace

TEST_F(TheProductsParameters, HaveTheirRangesAndDefaultsInRealForm)
{
    struct CRow {
        const char* name;
        double min;
        double max;
        double initial;
    };
    for (const CRow& row :
         {CRow{"modReelpath.recgain", std::pow(10, -1.5), std::pow(10, 1.5), 1.0},
          CRow{"modReelpath.saturation", 0.5, 1.0, 1.0}, CRow{"modReelpath.flutter", 0.0, 1.0, 0.5},
          CRow{"modReelpath.emphasis", -18.0, 18.0, 10.0}, CRow{"modReelpath.mode", 0.0, 4.0, 0.0},
          CRow{"modReelpath.cab-index", 0.0, 32.0, 1.0},
          CRow{"modOutGain.gain", std::pow(10, -0.6), std::pow(10, 0.6), 1.0},
          CRow{"oversampling", 0.0, 4.0, 1.0}, CRow{"meter-releasetime", 0.0, 5.0, 0.75},
          CRow{"meter-peaktime", 0.1, 10.0, 1.0}, CRow{"channel-counts", 0.0, 256.0, 2.0},
          CRow{"io-params.in-routing", 0.0, 16.0, 1.0}, CRow{"bypass-enable", 0.0, 1.0, 0.0}}) {
        SCOPED_TRACE(row.name);
        const CAudioParamInfo& info = *param(row.name).getInfo();
        EXPECT_NEAR(info.minValues[0], row.min, 1e-13);
        EXPECT_NEAR(info.maxValues[0], row.max, 1e-13);
        EXPECT_NEAR(param(row.name).value(0, 0), row.initial, 1e-15);
    }
    EXPECT_EQ(param("io-params.in-routing").getValues().getElementCount(0), 8);
    EXPECT_EQ(param("io-params.in-channel-names").text(0, 15), CString("IN16"));
    EXPECT_EQ(param("main-window-size").value(0, 1), 179.0);
    EXPECT_EQ(param("modReelpath.cab-status").text(0, 0), CString("Not loaded yet"));
    EXPECT_TRUE(param("groupsel").getInfo()->isPersistent);
    EXPECT_FALSE(param("groupsel").getInfo()->isStorable);
}

TEST_F(TheProductsParameters, ShowTheirValues)
{
    EXPECT_EQ(shown("modReelpath.recgain", 0.5), "0.0");
    EXPECT_EQ(shown("modReelpath.recgain", 0.0), "-30.0");
    EXPECT_EQ(shown("modReelpath.saturation", 0.5), "75.0");
    EXPECT_EQ(shown("modReelpath.mode", 0.75), "F100");
    EXPECT_EQ(shown("oversampling", 1.0), "8X");
    EXPECT_EQ(shown("bypass-enable", 1.0), "On");
    EXPECT_EQ(shown("meter-peaktime", 1.0), "10000");
}

TEST_F(TheProductsParameters, StayWhatTheyAreBehindText)
{
    CArray<CAudioParam*> params;
    collector->listParams(params);
    int numberCount = 0;
    for (CAudioParam* each : params) {
        const CAudioParamInfo& info = *each->getInfo();
        if (info.shape.dataType != EAudioParamType::Number)
            continue;
        SCOPED_TRACE(each->getName().toUtf8());
        ++numberCount;
        const CAudioParamConverter& cvt = info.getConverter(0);
        for (const double real : {info.minValues[0], info.defaults.value(0, 0)}) {
            CString text;
            bool ok = false;
            cvt.format(text, info, 0, real, EAudioParamFormat::Precise);
            const double back = cvt.parse(info, 0, text, ok);
            CString again;
            cvt.format(again, info, 0, back, EAudioParamFormat::Precise);
            EXPECT_TRUE(ok) << text.toUtf8();
            EXPECT_EQ(again, text);
        }
    }
    EXPECT_GE(numberCount, 25);
}

TEST_F(TheProductsParameters, AreJoinedByTheDocumentsFilters)
{
    COwnedArray<CAudioParamFilter> filters;
    for (CObject* child : application->getSharedRoot()->findObject("audio.modMain")->getChildren())
        if (auto* def = dynamic_cast<CAudioParamFilterDef*>(child)) {
            CPtr<CAudioParamFilter> made;
            ASSERT_OK(def->makeFilter(made, nullptr, *collector, "plugin.modMain"));
            filters.add(made.release());
        }
    ASSERT_EQ(filters.getCount(), 2);
    EXPECT_EQ(param("oversampling-bypass").value(0, 0), 1.0) << "1X";
    EXPECT_EQ(param("group-solo-bypass").value(0, 0), 1.0);
    param("oversampling").setValue(0, 0, 3.0);
    param("io-params.channel-group-solo").setValue(2, 0, 1.0);
    EXPECT_EQ(param("oversampling-bypass").value(0, 0), 0.0);
    EXPECT_EQ(param("group-solo-bypass").value(0, 0), 0.0);
}

} // namespace tsm
