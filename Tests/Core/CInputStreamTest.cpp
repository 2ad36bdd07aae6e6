#include "Core/CInputStream.h"

#include "Core/CMemoryReaderStatic.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"

#include <numeric>

namespace tsm {
namespace {

CBytes stringBytes(const CString& text)
{
    return written([&](COutputStream& out) { EXPECT_OK(out.writeString(text)); });
}

CBytes withLength(std::uint32_t length, const std::string& text)
{
    CBytes bytes;
    appendU32(bytes, length);
    bytes.insert(bytes.end(), text.begin(), text.end());
    return bytes;
}

CBytes withLength(const std::string& text)
{
    return withLength(static_cast<std::uint32_t>(text.size()), text);
}

CError* readFrom(const CBytes& bytes, CString& text)
{
    CPlainInput in(bytes);
    return in.readString(text);
}

TEST(AStoredText, IsItsUtf8BehindTheByteCount)
{
    EXPECT_EQ(stringBytes("Gray"), (CBytes{4, 0, 0, 0, 0x47, 0x72, 0x61, 0x79}));
    EXPECT_EQ(stringBytes(""), (CBytes{0, 0, 0, 0}));
    EXPECT_EQ(stringBytes("\xe9"), (CBytes{2, 0, 0, 0, 0xc3, 0xa9}));
    EXPECT_EQ(stringBytes(CString::fromUtf8("\u0416\u20ac")),
              (CBytes{5, 0, 0, 0, 0xd0, 0x96, 0xe2, 0x82, 0xac}));
}

TEST(AStoredText, HasNoSurrogatesAndEndsAtItsTerminator)
{
    CString text;
    for (const std::uint32_t code : {0xd7ffU, 0xd800U, 0xdfffU, 0xe000U})
        text.appendChar(code);
    EXPECT_EQ(stringBytes(text), withLength("\xed\x9f\xbf\xee\x80\x80"));
    EXPECT_EQ(stringBytes(CString("ab\0cd", 5)), withLength("ab"));
}

TEST(AStoredText, ComesBackInTheNarrowestForm)
{
    struct CRow {
        const char* utf8;
        bool isWide;
    };
    for (const CRow& row : {CRow{"", false}, CRow{"Tape 1 B", false}, CRow{"caf\u00e9", false},
                            CRow{"\u00ff\u0100", true}, CRow{"a\uffffb", true}}) {
        SCOPED_TRACE(row.utf8);
        CString text = CString::fromUtf8("\u0416 wide before"),
                expected = CString::fromUtf8(row.utf8);
        EXPECT_OK(readFrom(stringBytes(expected), text));
        EXPECT_EQ(text, expected);
        EXPECT_EQ(text.getIsWide(), row.isWide);
    }
}

TEST(AStoredText, EndsAtDamageInsideItself)
{
    struct CRow {
        std::string bytes, text;
    };
    for (const CRow& row : {CRow{"ab\xe2\x82", "ab"},             // cut sequence
                            CRow{std::string("ab\0cd", 5), "ab"}, // zero
                            CRow{"a\x80\xbf\xf8\xff"
                                 "b",
                                 "ab"}, // leading bytes of no kind
                            CRow{"\xc3", ""}}) {
        CString text;
        EXPECT_OK(readFrom(withLength(row.bytes), text));
        EXPECT_EQ(text, CString(row.text.c_str()));
    }
}

TEST(AStoredText, MayHave61440Bytes)
{
    CString text;
    EXPECT_OK(readFrom(withLength(std::string(61440, 'x')), text));
    EXPECT_EQ(text, CString(std::string(61440, 'x').c_str()));
    EXPECT_FAILS_WITH(readFrom(withLength(std::string(61441, 'x')), text),
                      "String length 61441 too long in readString().");
    EXPECT_FAILS_WITH(readFrom(withLength(0xffffffff, ""), text),
                      "String length 4294967295 too long in readString().");
}

TEST(AStoredText, FailsWhereverItIsCut)
{
    const CBytes whole = stringBytes(std::string(100, 'x').c_str());
    for (std::size_t size = 0; size < whole.size(); ++size) {
        CString text;
        EXPECT_FAILS_WITH(
            readFrom(CBytes(whole.begin(), whole.begin() + static_cast<int>(size)), text),
            "The plain stream has ended.");
    }
}

TEST(AStoredText, LeavesTheStreamBehindItself)
{
    const CBytes bytes = written([](COutputStream& out) {
        EXPECT_OK(out.writeString("first"));
        EXPECT_OK(out.writeValue(std::uint32_t{77}));
    });
    CPlainInput in(bytes);
    CString text;
    std::uint32_t number = 0;
    EXPECT_OK(in.readString(text));
    EXPECT_OK(in.readValue(number));
    EXPECT_EQ(number, 77u);
}

TEST(APlainStream, SkipsByReadingInPieces)
{
    CPlainInput in(CBytes(100000, 0));
    EXPECT_OK(in.skip(0));
    EXPECT_OK(in.skip(-5));
    EXPECT_EQ(in.position, 0);
    EXPECT_OK(in.skip(70000));
    EXPECT_EQ(in.position, 70000);
    EXPECT_EQ(in.largestRead, 32768);
    EXPECT_FAILS_WITH(in.skip(30001), "The plain stream has ended.");
}

TEST(APlainStream, ReadsLargeBlocksInFewSteps)
{
    constexpr int kSize = 16 << 20;
    class CCountingInput : public CPlainInput {
    public:
        using CPlainInput::CPlainInput;
        CError* read(void* buffer, int count) override
        {
            ++readCount;
            EXPECT_LE(count, std::max(65536, position)) << "more than twice what came";
            return CPlainInput::read(buffer, count);
        }
        int readCount = 0;
    };
    CBytes bytes(kSize);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    CCountingInput in(bytes);
    CByteBuffer block;
    EXPECT_OK(in.readBytes(block, kSize));
    // Each step copies what there is: of equal steps the copies would grow with the square.
    EXPECT_LE(in.readCount, 10);
    EXPECT_TRUE(toBytes(block) == bytes);

    CCountingInput cut(CBytes(100000, 0));
    EXPECT_FAILS_WITH(cut.readBytes(block, kSize), "The plain stream has ended.");
}

TEST(APlainStream, StreamsExactCountsOnly)
{
    CPlainInput in(CBytes{1, 2, 3});
    std::uint8_t bytes[4] = {};
    int count = 3;
    EXPECT_EQ(in.getMemoryPtr(), nullptr);
    EXPECT_OK(in.readStreamed(bytes, count));
    EXPECT_EQ(count, 3);
    count = 1;
    EXPECT_FAILS_WITH(in.readStreamed(bytes, count), "The plain stream has ended.");
}

/// Ten bytes, 0 to 9.
class AMemoryReader : public testing::Test {
protected:
    std::uint64_t position()
    {
        std::uint64_t result = 99;
        EXPECT_OK(in.getPosition(result));
        return result;
    }
    const CBytes memory{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    CMemoryReaderStatic in{memory.data(), 10};
    std::uint8_t bytes[16] = {};
};

TEST_F(AMemoryReader, StaysWhereItIsWhenItFails)
{
    EXPECT_OK(in.read(bytes, 4));
    EXPECT_EQ(bytes[3], 3);
    EXPECT_FAILS_WITH(in.read(bytes, 7),
                      "Premature end of memory resource while reading (pos 4, count 7, size 10).");
    EXPECT_FAILS_WITH(
        in.skip(0x7fffffff),
        "Premature end of memory resource while skipping (pos 4, count 2147483647, size 10).");
    EXPECT_EQ(position(), 4u);
    EXPECT_OK(in.skip(6));
    EXPECT_EQ(position(), 10u);
}

TEST_F(AMemoryReader, StreamsWhatIsLeft)
{
    EXPECT_OK(in.skip(7));
    int count = 16;
    EXPECT_OK(in.readStreamed(bytes, count));
    EXPECT_EQ(count, 3);
    EXPECT_EQ(bytes[2], 9);
    count = 16;
    EXPECT_OK(in.readStreamed(bytes, count));
    EXPECT_EQ(count, 0);
}

TEST_F(AMemoryReader, TakesPositionsUpToItsSize)
{
    EXPECT_OK(in.setPosition(10));
    EXPECT_FAILS_WITH(in.setPosition(11),
                      "Positioning beyond memory resource end (newpos 11, size 10).");
    // 2^32 + 3 would be 3 in 32 bits.
    EXPECT_FAILS_WITH(in.setPosition(0x100000003),
                      "Positioning beyond memory resource end (newpos 4294967299, size 10).");
    EXPECT_EQ(position(), 10u);
}

TEST_F(AMemoryReader, ShowsItsUnreadDataIfTheyStay)
{
    EXPECT_OK(in.skip(3));
    EXPECT_EQ(in.getMemoryPtr(), memory.data() + 3);
    EXPECT_OK(in.skip(7));
    EXPECT_EQ(in.getMemoryPtr(), nullptr);
    CMemoryReader passing(memory.data(), 10);
    EXPECT_EQ(passing.getMemoryPtr(), nullptr);
}

/// Claims any size and position.
class CHugeStream : public CPosStream {
public:
    CError* getPosition(std::uint64_t& result) override { return (result = place, nullptr); }
    CError* getSize(std::uint64_t& result) override { return (result = place, nullptr); }
    CError* setPosition(std::uint64_t position) override { return (place = position, nullptr); }
    std::uint64_t place = 0;
};

TEST(A32BitPosition, EndsAt2GB)
{
    CHugeStream stream;
    std::int32_t value = 0;
    stream.place = 0x7fffffff;
    EXPECT_OK(stream.getPositionInt32(value));
    EXPECT_EQ(value, 0x7fffffff);
    EXPECT_OK(stream.getSizeInt(value));
    stream.place = 0x80000000;
    const std::string message = "The size of the stream is above allowed 2 GB.";
    EXPECT_FAILS_WITH(stream.getPositionInt32(value), message);
    EXPECT_FAILS_WITH(stream.getSizeInt(value), message);
}

} // namespace
} // namespace tsm
