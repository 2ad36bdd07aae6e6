#include "Tests/Support/CParamTree.h"

#include <cmath>

namespace tsm {

namespace {

constexpr std::uint64_t kOne = 0x3ff0000000000000; // 1.0
constexpr std::uint64_t kTwo = 0x4000000000000000; // 2.0
constexpr std::uint64_t kNotANumber = 0x7ff8000000000000;

class ASavedParameter : public AParamTree {
protected:
    static CByteList head(std::uint32_t type, std::uint32_t groups)
    {
        CByteList list;
        list.u32(1).u32(1).u32(type).u32(groups);
        return list;
    }
    CAudioParam& texts() { return param("names", textParam("a,b,c")); }
    /// Reads each cut and many damaged forms of the bytes into `target`, which must stay usable.
    static void damage(CAudioParam& target, const std::vector<std::uint8_t>& bytes)
    {
        const auto before = savedBytes(target);
        for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
            const std::vector<std::uint8_t> part(bytes.begin(),
                                                 bytes.begin() + static_cast<std::ptrdiff_t>(cut));
            EXPECT_FALSE(takeLines(loadInto(target, part)).empty()) << cut;
            EXPECT_EQ(savedBytes(target), before) << cut;
        }
        for (std::size_t at = 0; at < bytes.size(); ++at)
            for (const int value : {0x00, 0x01, 0x02, 0x21, 0x7f, 0x80, 0xff}) {
                auto damaged = bytes;
                damaged[at] = static_cast<std::uint8_t>(value);
                takeLines(loadInto(target, damaged));
                for (int group = 0; group < target.getValues().getGroupCount(); ++group)
                    for (int i = 0; i < target.getValues().getElementCount(group); ++i)
                        EXPECT_TRUE(std::isfinite(target.value(group, i)));
            }
    }
};

} // namespace

TEST_F(ASavedParameter, HasThePublishedBytes)
{
    // The item "bypass-enable" of the factory bank: its name, and the storage behind it.
    CAudioParam& bypass =
        param("bypass-enable", converter("enum-enable", {{"max-values", "1"},
                                                         {"is-single-group", "true"},
                                                         {"is-single-element", "true"}}));
    const std::vector<std::uint8_t> published = {
        0x1b, 0,   0,   0,   'a', 'u', 'd', 'i', 'o', '.', 'm', 'o', 'd', 'M', 'a',
        'i',  'n', '.', 'b', 'y', 'p', 'a', 's', 's', '-', 'e', 'n', 'a', 'b', 'l',
        'e',  1,   0,   0,   0,   1,   0,   0,   0,   0,   0,   0,   0,   1,   0,
        0,    0,   1,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0,   0};
    ASSERT_EQ(published.size(), 59u);
    EXPECT_EQ(bytesOf([&](COutputStream& stream) -> CError* {
                  TSM_TRY(stream.writeString(bypass.getInfo()->fullName));
                  return bypass.saveValues(stream);
              }),
              published);
}

TEST_F(ASavedParameter, HasItsTextsInFrontOfTheirIds)
{
    CAudioParam& name = param("instance-name", textParam(" ", {{"is-single-group", "true"}}));
    for (int i = 0; i < 5; ++i)
        name.setText(0, 0, i % 2 ? "x" : " "); // ids grow, and are written from 1 on
    EXPECT_EQ(savedBytes(name), head(1, 1).u32(1).u32(1).u32(1).text(" ").u32(1).u32(1).bytes);
}

TEST_F(ASavedParameter, HasItsTextsInUtf8)
{
    CAudioParam& name = param("name", textParam("x"));
    CString wide("\xe9");
    wide.appendChar(0x20ac);
    name.setText(0, 0, wide);
    EXPECT_EQ(savedBytes(name),
              head(1, 1).u32(1).u32(1).u32(1).text("\xc3\xa9\xe2\x82\xac").u32(1).u32(1).bytes);
    CAudioParam& other = param("other", textParam("x"));
    ASSERT_OK(loadInto(other, savedBytes(name)));
    EXPECT_EQ(other.text(0, 0), wide);
}

TEST_F(ASavedParameter, FallsBackToDefaultsWhereItHasFewerElements)
{
    CAudioParam& routing = param("in-routing", {{"def-values", "1,2,3,4,5,6,7,8"}});
    ASSERT_OK(loadInto(routing, head(0, 1).u32(2).f64(kTwo).f64(kOne).bytes));
    EXPECT_EQ(routing.value(0, 0), 2.0);
    EXPECT_EQ(routing.value(0, 1), 1.0);
    EXPECT_EQ(routing.value(0, 2), 3.0);
    EXPECT_EQ(routing.value(0, 99), 1.0) << "beyond the fallback its first element counts";
    EXPECT_EQ(routing.value(3, 1), 2.0) << "a group that isn't held";
    EXPECT_EQ(savedBytes(routing), head(0, 1).u32(2).f64(kTwo).f64(kOne).bytes);
}

TEST_F(ASavedParameter, ReplacesAllGroups)
{
    CAudioParam& gain = param("gain", {{"def-values", "7"}});
    gain.setValue(2, 0, 5.0);
    ASSERT_OK(loadInto(gain, head(0, 2).u32(1).f64(kOne).u32(1).f64(kTwo).bytes));
    EXPECT_EQ(gain.value(0, 0), 1.0);
    EXPECT_EQ(gain.value(1, 0), 2.0);
    EXPECT_EQ(gain.value(2, 0), 7.0) << "wasn't saved and reads the default";
    ASSERT_OK(loadInto(gain, head(0, 1).u32(1).f64(kTwo).bytes, 4));
    EXPECT_EQ(gain.value(4, 0), 2.0) << "a single saved group becomes the one asked for";
    EXPECT_EQ(gain.value(0, 0), 1.0);
}

TEST_F(ASavedParameter, IsReadOverWhereGroupsDontGoTogether)
{
    CAudioParam& gain = param("gain", {{"def-values", "7"}});
    CAudioParam& single = param("single", {{"def-values", "7"}, {"is-single-group", "true"}});
    auto two = head(0, 2).u32(1).f64(kOne).u32(1).f64(kTwo);
    two.u32(0xabcdef);
    for (CAudioParam* target : {&gain, &single}) {
        CMemoryReader reader(two.bytes.data(), static_cast<int>(two.bytes.size()));
        ASSERT_OK(
            target->loadValues(reader, target == &gain ? 1 : kAllParamGroups, nullptr, nullptr));
        EXPECT_EQ(target->value(0, 0), 7.0);
        EXPECT_EQ(target->value(1, 0), 7.0);
        std::uint32_t behind = 0;
        ASSERT_OK(reader.readValue(behind));
        EXPECT_EQ(behind, 0xabcdefu);
    }
}

TEST_F(ASavedParameter, RefusesOtherVersionsAndShapes)
{
    CAudioParam& gain = param("gain", {{"def-values", "7"}});
    EXPECT_FAILS_WITH(loadInto(gain, CByteList().u32(2).bytes),
                      "tsmstr_CAudioParamStorage_load_VersionError Unsupported data set version "
                      "2.");
    EXPECT_FAILS_WITH(
        loadInto(gain, CByteList().u32(1).u32(2).u32(0).u32(1).bytes),
        "Unsupported storage format (esize=2, dtype=0; should be: esize=1, dtype=0).");
    EXPECT_FAILS_WITH(
        loadInto(gain, head(1, 0).bytes),
        "Unsupported storage format (esize=1, dtype=1; should be: esize=1, dtype=0).");
    EXPECT_FAILS_WITH(loadInto(gain, head(0, 1).u32(0x7fffffff).bytes),
                      "Invalid element count 2147483647.");
    EXPECT_FAILS_WITH(loadInto(texts(), head(1, 1).u32(1).u32(1).u32(3).bytes),
                      "Unknown data type 3 encountered");
    EXPECT_EQ(gain.value(0, 0), 7.0);
}

TEST_F(ASavedParameter, LetsNoNumberThroughThatIsNone)
{
    CAudioParam& gain = param("gain", {{"def-values", "7"}});
    ASSERT_OK(loadInto(gain, head(0, 1).u32(2).f64(kNotANumber).f64(kOne).bytes));
    EXPECT_EQ(gain.value(0, 0), 7.0);
    EXPECT_EQ(gain.value(0, 1), 1.0);
}

TEST_F(ASavedParameter, KeepsOneItemForAnIdThatIsNamedTwice)
{
    CAudioParam& names = texts();
    ASSERT_OK(loadInto(names, head(1, 1)
                                  .u32(2)
                                  .u32(1)
                                  .u32(1)
                                  .text("x")
                                  .u32(7)
                                  .u32(2)
                                  .text("raw")
                                  .u32(3)
                                  .u32(1)
                                  .u32(1)
                                  .u32(7)
                                  .bytes));
    EXPECT_EQ(names.text(0, 0), CString("x"));
    EXPECT_EQ(names.text(0, 1), CString());
    EXPECT_EQ(names.text(0, 2), CString()) << "an item of another type";
}

TEST_F(ASavedParameter, LogsATableOutOfOrderOnce)
{
    constexpr std::uint32_t kCount = 1000;
    CLogCollector log;
    CAudioParam& names = texts();
    CByteList bytes = head(1, 1).u32(kCount);
    for (std::uint32_t i = 0; i < kCount; ++i)
        bytes.u32(kCount - i).u32(1).text("x");
    ASSERT_OK(loadInto(names, bytes.u32(0).bytes));
    CAudioParam& mode = param("mode", {{"is-single-element", "true"}});
    CByteList groups = head(0, kCount);
    for (std::uint32_t i = 0; i < kCount; ++i)
        groups.u32(0);
    ASSERT_OK(loadInto(mode, groups.bytes));
    EXPECT_LE(log.lines.size(), 2U);
}

TEST_F(ASavedParameter, HasNoMoreItemsThanValues)
{
    CAudioParam& names = texts();
    EXPECT_FAILS_WITH(loadInto(names, head(1, 1).u32(32 * 65536 + 1).u32(1).bytes),
                      "Invalid item count 2097153.");
}

TEST_F(ASavedParameter, LogsWhatIsOutOfOrderAndGoesOn)
{
    CLogCollector log;
    CAudioParam& names = texts();
    ASSERT_OK(loadInto(names, head(1, 1).u32(1).u32(5).u32(1).text("x").u32(1).u32(5).bytes));
    EXPECT_EQ(names.text(0, 0), CString("x"));
    CAudioParam& mode = param("mode", {{"is-single-element", "true"}});
    ASSERT_OK(loadInto(mode, head(0, 1).u32(2).f64(kTwo).f64(kOne).bytes));
    EXPECT_EQ(mode.value(0, 0), 2.0);
    EXPECT_THAT(log.lines, ::testing::Contains("Unexpected LoadElement 5 (expected 1)."));
    EXPECT_THAT(log.lines, ::testing::Contains("Unexpected Element 2 (expected 1), param "
                                               "'plugin.modMain.mode'. // plugin.modMain.mode"));
}

TEST_F(ASavedParameter, SurvivesDamage)
{
    CAudioParam& gain = param("gain", {{"def-values", "1,2;3"}});
    damage(gain, savedBytes(gain));
    CAudioParam& names = texts();
    names.setText(1, 1, "second");
    damage(names, savedBytes(names));
    CAudioParam& palette = param("palette", {{"data-type", "raw"}, {"def-values", ""}});
    const char block[] = "sixty bytes of a palette, more than fit into the buffer itself.";
    palette.setRaw(0, 0, block, sizeof block);
    damage(palette, savedBytes(palette));
}

TEST_F(ASavedParameter, HasBlocksOfAnySize)
{
    CAudioParam& palette = param("palette", {{"data-type", "raw"}, {"def-values", "0"}});
    EXPECT_TRUE(palette.raw(0, 0).isEmpty());
    std::vector<std::uint8_t> block(200000);
    for (std::size_t i = 0; i < block.size(); ++i)
        block[i] = static_cast<std::uint8_t>(i * 31);
    palette.setRaw(0, 0, block.data(), static_cast<int>(block.size()));
    CAudioParam& other = param("other", {{"data-type", "raw"}, {"def-values", "0"}});
    ASSERT_OK(loadInto(other, savedBytes(palette)));
    EXPECT_EQ(other.raw(0, 0), CByteBuffer(block.data(), static_cast<int>(block.size())));
}

TEST_F(ASavedParameter, ReadsOneGroupOfASingleGroupParameterForAll)
{
    CAudioParam& single = param("single", {{"is-single-group", "true"}});
    single.setValue(5, 0, 3.0);
    EXPECT_EQ(single.value(0, 0), 3.0);
    EXPECT_EQ(single.value(5, 0), 3.0);
    EXPECT_EQ(single.getValues().getGroupCount(), 1);
}

} // namespace tsm
