#include "Tests/Support/CParamTree.h"

#include <cmath>

namespace tsm {

namespace {

class AParamDefinition : public AParamTree {
protected:
    CError* build(const CTestAttrs& attrs)
    {
        CAudioParamDef* def = nullptr;
        return define(def, "x", attrs);
    }
    std::vector<double> defaultsOf(const char* text, CTestAttrs more = {})
    {
        more.push_back({"def-values", text});
        const CAudioParamStorage& storage = infoOf("x", more).defaults;
        std::vector<double> all;
        for (int group = 0; group < storage.getGroupCount(); ++group)
            for (int i = 0; i < storage.getElementCount(group); ++i)
                all.push_back(storage.value(group, i));
        return all;
    }
    CError* buildRemap(CAudioParamRemapDef*& def, const CTestAttrs& attrs, const char* content)
    {
        CObject* made = nullptr;
        EXPECT_OK(definitions->addChild(made, "audio:param-remap", "r", false));
        def = static_cast<CAudioParamRemapDef*>(made);
        for (const auto& [key, value] : attrs)
            EXPECT_OK(def->setAttr(key, CString(value.c_str()), false));
        EXPECT_OK(def->init());
        if (content) {
            CObject* child = nullptr;
            EXPECT_OK(def->addChild(child, "content", "content", false));
            EXPECT_OK(child->setAttr("value", CString(content), false));
        }
        return def->initChilds();
    }
};

using CPairs = std::vector<std::pair<std::string, std::string>>;

CPairs pairsOf(const CAudioParamRemapDef& def)
{
    CPairs pairs;
    for (const auto& pair : def.getPairs())
        pairs.emplace_back(pair.origName.toUtf8(), pair.newName.toUtf8());
    return pairs;
}

} // namespace

TEST_F(AParamDefinition, PassesItsTextsThroughTheConverter)
{
    const CAudioParamInfo& info =
        infoOf("recgain", converter("gain", {{"min-values", "-30"},
                                             {"max-values", "30"},
                                             {"def-values", "0.0"},
                                             {"visual-name", "Recording gain"}}));
    EXPECT_NEAR(info.minValues[0], std::pow(10.0, -1.5), 1e-15);
    EXPECT_NEAR(info.maxValues[0], std::pow(10.0, 1.5), 1e-13);
    EXPECT_EQ(info.defaults.value(0, 0), 1.0);
    EXPECT_EQ(info.visualName, CString("Recording gain"));
    EXPECT_EQ(info.fullName, CString("audio.modMain.recgain"));
}

TEST_F(AParamDefinition, TakesGroupsAndElementsFromItsText)
{
    EXPECT_EQ(defaultsOf("1,2,0,0,0,0,0,0"), (std::vector<double>{1, 2, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(defaultsOf("1, 2; 3,,5"), (std::vector<double>{1, 2, 3, 0, 5}));
    EXPECT_EQ(defaultsOf("1X,4X", converter("enum", {{"state-names", "Auto;1X;2X;4X"}})),
              (std::vector<double>{1, 3}));
    const CAudioParamStorage& two = infoOf("y", {{"element-size", "2"},
                                                 {"converter2", "shared::audio.paramcvt.percent"},
                                                 {"min-values", "0 0"},
                                                 {"max-values", "9 100"},
                                                 {"def-values", "1 50, 2 100"}})
                                        .defaults;
    EXPECT_EQ(two.value(0, 1, 0.0, 0), 2.0);
    EXPECT_EQ(two.value(0, 0, 0.0, 1), 0.5);
    EXPECT_EQ(two.value(7, 5, 0.0, 1), 0.5) << "the fallback's first element";
}

TEST_F(AParamDefinition, TakesTextsAndAnEmptyOneAsOneItem)
{
    const CAudioParamInfo& names = infoOf("x", textParam("L,R,IN3"));
    EXPECT_EQ(names.defaults.getElementCount(0), 3);
    EXPECT_EQ(names.defaults.text(0, 2), CString("IN3"));
    EXPECT_EQ(names.defaults.text(0, 9), CString("L"));
    EXPECT_EQ(names.minValues[0], 0.0);
    EXPECT_EQ(names.maxValues[0], 8388608.0);
    const CAudioParamInfo& empty = infoOf("y", textParam(""));
    EXPECT_EQ(empty.defaults.getElementCount(0), 1);
    EXPECT_EQ(empty.defaults.text(0, 0), CString());
}

TEST_F(AParamDefinition, CountsAsPersistentOnlyWhenItIsBoth)
{
    const CAudioParamInfo& both = infoOf("x", {{"is-persistent", "true"}});
    EXPECT_TRUE(both.isPersistent);
    EXPECT_FALSE(both.isStorable);
    EXPECT_TRUE(both.isGlobal);
    CAudioParamDef* local = nullptr;
    ASSERT_OK(define(local, "y", {{"is-storable", "false"}}));
    EXPECT_FALSE(local->hasStorage());
}

TEST_F(AParamDefinition, RefusesWhatIsWrong)
{
    struct CRow {
        CTestAttrs attrs;
        const char* message;
    };
    for (const CRow& row : {
             CRow{{{"element-size", "0"}}, "Invalid element size 0 specified."},
             CRow{{{"element-size", "2"}, {"data-type", "raw"}},
                  "Invalid element size 2 for non-float data specified."},
             CRow{{{"def-values", ""}}, "No default values specified."},
             CRow{{{"converter", "shared::audio.paramcvt.none"}},
                  "Audio parameter converter 'shared::audio.paramcvt.none' not found."},
             CRow{{{"element-size", "2"}}, "Not enough converters defined 1 (should be 2)."},
             CRow{{{"min-values", " "}}, "Not enough minimum values defined 0 (should be 1)."},
             CRow{{{"max-values", ""}}, "Not enough maximum values defined 0 (should be 1)."},
             CRow{{{"max-values", "0"}},
                  "Zero default min-max values difference detected in element 0."},
             CRow{{{"state-names", "@/routing"}}, "No state names data available in '@/routing'."},
             CRow{{{"def-values", "1,x"}}, "Default values parsing error."},
             CRow{{{"element-size", "2"},
                   {"converter2", "shared::audio.paramcvt.real"},
                   {"min-values", "0 0"},
                   {"max-values", "1 1"},
                   {"def-values", "1 2,3"}},
                  "Not enough default elements at pos 1."},
         }) {
        SCOPED_TRACE(row.message);
        EXPECT_FAILS_WITH(build(row.attrs), row.message);
    }
}

TEST_F(AParamDefinition, IsTheSameBehindItsSavedForm)
{
    const CAudioParamInfo& info = infoOf("x", converter("enum", {{"state-names", "One|1;Two|2"},
                                                                 {"def-values", "1,0;1"},
                                                                 {"is-single-element", "false"}}));
    const auto bytes = bytesOf([&](COutputStream& stream) { return info.save(stream); });
    CAudioParamInfo copy;
    CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
    ASSERT_OK(copy.load(reader, *root.get()));
    EXPECT_TRUE(copy.isSameAs(info));
    EXPECT_TRUE(copy.isStorable);
    EXPECT_EQ(&copy.getConverter(0), &info.getConverter(0));
    EXPECT_EQ(copy.maxValues[0], 100.0);
    EXPECT_EQ(copy.stateNames.getShort(1), CString("2"));
    EXPECT_EQ(copy.defaults.value(0, 0), 1.0);
    EXPECT_EQ(copy.defaults.value(9, 0), 1.0) << "the fallback is the first group";
    EXPECT_EQ(bytesOf([&](COutputStream& stream) { return copy.save(stream); }), bytes);
}

TEST_F(AParamDefinition, SavesItsDescriptionByteByByte)
{
    const CAudioParamInfo& info = infoOf("mode", {{"visual-name", "Mode"},
                                                  {"max-values", "2"},
                                                  {"def-values", "1"},
                                                  {"is-single-group", "true"},
                                                  {"state-names", "Off|o"}});
    CByteList expected;
    expected.u32(1).u32(1).u32(1).u32(0);
    expected.text("Mode").text("audio.modMain.mode").text("");
    expected.u32(1).u32(0).u32(1).u32(0);
    expected.text("shared::audio.paramcvt.real").f64(0).f64(0x4000000000000000);
    expected.u32(1).text("Off").text("o");
    expected.u32(1).u32(1).u32(0).u32(1).u32(1).f64(0x3ff0000000000000);
    EXPECT_EQ(bytesOf([&](COutputStream& stream) { return info.save(stream); }), expected.bytes);
}

TEST_F(AParamDefinition, RefusesSavedLimitsThatAreNoNumbers)
{
    for (const std::uint64_t limit :
         {0x7ff8000000000000u, 0x7ff0000000000000u, 0xfff0000000000000u})
        for (const bool isMinimum : {true, false}) {
            CByteList list;
            list.u32(1).u32(0).u32(0).u32(0).text("").text("audio.x").text("");
            list.u32(1).u32(0).u32(1).u32(1).text("shared::audio.paramcvt.real");
            list.f64(isMinimum ? limit : 0).f64(isMinimum ? 0 : limit);
            CAudioParamInfo info;
            CMemoryReader reader(list.bytes.data(), static_cast<int>(list.bytes.size()));
            EXPECT_THAT(takeLines(info.load(reader, *root.get())),
                        testing::Contains(testing::HasSubstr("'audio.x' are no numbers")));
        }
}

TEST_F(AParamDefinition, SurvivesDamageOfItsSavedForm)
{
    const CAudioParamInfo& info =
        infoOf("x", converter("enum", {{"state-names", "One|1;Two|2"}, {"def-values", "1,0;1"}}));
    const auto bytes = bytesOf([&](COutputStream& stream) { return info.save(stream); });
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        const std::vector<std::uint8_t> part(bytes.begin(),
                                             bytes.begin() + static_cast<std::ptrdiff_t>(cut));
        CAudioParamInfo copy;
        CMemoryReader reader(part.data(), static_cast<int>(part.size()));
        EXPECT_FALSE(takeLines(copy.load(reader, *root.get())).empty()) << cut;
    }
    for (std::size_t at = 0; at < bytes.size(); ++at)
        for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
            auto damaged = bytes;
            damaged[at] = static_cast<std::uint8_t>(value);
            CAudioParamInfo copy;
            CMemoryReader reader(damaged.data(), static_cast<int>(damaged.size()));
            CError* error = copy.load(reader, *root.get());
            if (takeLines(error).empty()) {
                // What was accepted can be used.
                CString text;
                copy.getConverter(0).format(text, copy, 0, copy.defaults.value(0, 0),
                                            EAudioParamFormat::Normal);
                EXPECT_EQ(copy.defaults.getShape(), copy.shape) << at;
                EXPECT_EQ(copy.converters.getCount(), copy.shape.elementSize) << at;
            }
        }
}

TEST_F(AParamDefinition, ReadsRemapsFromAttributesAndContent)
{
    CAudioParamRemapDef* def = nullptr;
    ASSERT_OK(buildRemap(def, {{"orig", "a"}, {"new", "^b"}}, "\n  c = d ;\n e=/f.g;\n"));
    EXPECT_EQ(pairsOf(*def), (CPairs{{"a", "^b"}, {"c", "d"}, {"e", "/f.g"}}));
    ASSERT_OK(buildRemap(def, {}, "a=b  c=d"));
    EXPECT_EQ(pairsOf(*def), (CPairs{{"a", "b"}, {"c", "d"}}));
}

TEST_F(AParamDefinition, RefusesBadRemaps)
{
    CAudioParamRemapDef* def = nullptr;
    EXPECT_FAILS_WITH(buildRemap(def, {}, nullptr), "No remappings defined.");
    EXPECT_FAILS_WITH(buildRemap(def, {}, "a = b; c"), "Invalid remapping string 'c' defined.");
    EXPECT_FAILS_WITH(buildRemap(def, {}, "a=b=c"), "Invalid remapping string 'a=b=c' defined.");
}

} // namespace tsm
