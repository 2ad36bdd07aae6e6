#include "Core/CMemoryReaderStatic.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"

#include <functional>
#include <lz4.h>
#include <random>
#include <zlib.h>

namespace tsm {
namespace {

constexpr std::uint32_t kId = 0x6b6e6261; // "abnk"
constexpr std::size_t kZlibHead = 12;
constexpr std::size_t kLZ4Head = 16;

/// Half of it repeats, half of it doesn't, so that both parts of a coder have to work.
CBytes mixedData(int size)
{
    std::mt19937 random(1);
    CBytes data(static_cast<std::size_t>(size));
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(i / 64 % 2 ? i % 64 : random());
    return data;
}

std::uint32_t checkOf(const CBytes& sizes)
{
    return static_cast<std::uint32_t>(
        adler32(1, sizes.data(), static_cast<uInt>(sizes.size()))); // 1: RFC 1950, section 8.2
}

CBytes headed(const std::vector<std::uint32_t>& sizes, const CBytes& body)
{
    CBytes sizeBytes;
    for (const std::uint32_t size : sizes)
        appendU32(sizeBytes, size);
    CBytes block;
    appendU32(block, kId);
    block.insert(block.end(), sizeBytes.begin(), sizeBytes.end());
    appendU32(block, checkOf(sizeBytes));
    block.insert(block.end(), body.begin(), body.end());
    return block;
}

CBytes zlibPacked(const CBytes& raw)
{
    CBytes body(compressBound(raw.size()));
    uLongf size = body.size();
    EXPECT_EQ(compress(body.data(), &size, raw.data(), raw.size()), Z_OK);
    body.resize(size);
    return body;
}

CBytes lz4Packed(const CBytes& raw)
{
    CBytes body(static_cast<std::size_t>(LZ4_compressBound(static_cast<int>(raw.size()))));
    const int size = LZ4_compress_default(
        reinterpret_cast<const char*>(raw.data()), reinterpret_cast<char*>(body.data()),
        static_cast<int>(raw.size()), static_cast<int>(body.size()));
    EXPECT_GT(size, 0);
    body.resize(static_cast<std::size_t>(size));
    return body;
}

/// One of the two forms, with blocks made by the libraries alone.
struct CForm {
    const char* name;
    std::size_t headSize;
    CBytes (*makeBlock)(const CBytes& raw);
    CError* (*readBlock)(CInputStream& in, CByteBuffer& out, std::uint32_t id);
};

const CForm kZlibForm{"zlib", kZlibHead,
                      [](const CBytes& raw) {
                          return headed({static_cast<std::uint32_t>(raw.size())}, zlibPacked(raw));
                      },
                      [](CInputStream& in, CByteBuffer& out, std::uint32_t id) {
                          return in.readCompressedData(out, id);
                      }};

const CForm kLZ4Form{"LZ4", kLZ4Head,
                     [](const CBytes& raw) {
                         const CBytes body = lz4Packed(raw);
                         return headed({static_cast<std::uint32_t>(raw.size()),
                                        static_cast<std::uint32_t>(body.size())},
                                       body);
                     },
                     [](CInputStream& in, CByteBuffer& out, std::uint32_t id) {
                         return in.readCompressedDataLZ4(out, id);
                     }};

/// Runs `check` over each kind of source: memory that stays, memory that doesn't, neither, and one
/// that hands out 7 bytes at a time.
void withEachSource(const CBytes& block, const std::function<void(CInputStream&)>& check)
{
    const int size = static_cast<int>(block.size());
    CMemoryReaderStatic lasting(block.data(), size);
    CMemoryReader passing(block.data(), size);
    CTrickleInput trickle(block, 7);
    const std::pair<const char*, CInputStream*> sources[] = {
        {"lasting memory", &lasting}, {"memory", &passing}, {"trickle", &trickle}};
    for (const auto& [name, source] : sources) {
        SCOPED_TRACE(name);
        check(*source);
    }
}

class ACompressedBlock : public testing::TestWithParam<const CForm*> {
protected:
    const CForm& form = *GetParam();
};

INSTANTIATE_TEST_SUITE_P(OfBothForms, ACompressedBlock, testing::Values(&kZlibForm, &kLZ4Form),
                         [](const auto& tested) { return tested.param->name; });

TEST_P(ACompressedBlock, OfTheLibraryIsRead)
{
    for (const int size : {0, 1, 47, 48, 49, 65535, 65536, 65537, 400000}) {
        SCOPED_TRACE(size);
        const CBytes raw = mixedData(size);
        withEachSource(form.makeBlock(raw), [&](CInputStream& in) {
            CByteBuffer out;
            EXPECT_OK(form.readBlock(in, out, kId));
            EXPECT_EQ(toBytes(out), raw);
            EXPECT_EQ(out.isInline(), size <= 48);
        });
    }
}

TEST_P(ACompressedBlock, OfAnotherIdFailsBeforeAnythingElseIsRead)
{
    CPlainInput in(CBytes{'a', 'l', 's', 't'});
    CByteBuffer out;
    EXPECT_FAILS_WITH(form.readBlock(in, out, kId),
                      "Invalid ID encountered when reading compressed data (expected 1802396257, "
                      "read 1953721441).");
    EXPECT_EQ(in.position, 4);
}

TEST_P(ACompressedBlock, WithADamagedHeadFails)
{
    const CBytes whole = form.makeBlock(mixedData(300));
    for (std::size_t at = 4; at < form.headSize; ++at)
        for (int bit = 0; bit < 8; ++bit) {
            CBytes damaged = whole;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ 1 << bit);
            CPlainInput in(damaged);
            CByteBuffer out;
            EXPECT_THAT(takeMessage(form.readBlock(in, out, kId)),
                        testing::StartsWith("Invalid CRC encountered when reading compressed data "
                                            "(expected "));
            EXPECT_EQ(in.position, static_cast<int>(form.headSize));
        }
}

TEST_P(ACompressedBlock, WithADamagedBodyFailsOrKeepsItsSize)
{
    const CBytes whole = form.makeBlock(mixedData(700));
    int failures = 0;
    for (std::size_t at = form.headSize; at < whole.size(); ++at)
        for (const int damage : {0x01, 0x10, 0x80, 0xff}) {
            CBytes damaged = whole;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ damage);
            withEachSource(damaged, [&](CInputStream& in) {
                CByteBuffer out;
                const bool isFailed = !takeLines(form.readBlock(in, out, kId)).empty();
                failures += isFailed;
                EXPECT_LE(out.getSize(), 700);
                if (!isFailed) {
                    EXPECT_EQ(out.getSize(), 700);
                }
            });
        }
    EXPECT_GT(failures, 0);
}

TEST_P(ACompressedBlock, CutAnywhereFailsOrIsWhole)
{
    const CBytes raw = mixedData(700);
    const CBytes whole = form.makeBlock(raw);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        const CBytes cut(whole.begin(), whole.begin() + static_cast<int>(size));
        withEachSource(cut, [&](CInputStream& in) {
            CByteBuffer out;
            const bool isFailed = !takeLines(form.readBlock(in, out, kId)).empty();
            // The last bytes of a zlib stream are its end mark and check, which hold no data.
            const bool mayPass = &form == &kZlibForm && size + 6 >= whole.size();
            EXPECT_TRUE(isFailed || mayPass);
            if (!isFailed) {
                EXPECT_EQ(toBytes(out), raw);
            }
        });
    }
}

/// How much a buffer has grown tells what the claim has cost.
TEST_P(ACompressedBlock, IsNotBelievedInItsSizes)
{
    const CBytes body =
        &form == &kZlibForm ? zlibPacked(mixedData(100)) : lz4Packed(mixedData(100));
    const auto bodySize = static_cast<std::uint32_t>(body.size());
    for (const std::uint32_t claim : {0x100000u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        SCOPED_TRACE(claim);
        const auto claims = &form == &kZlibForm
                                ? std::vector<std::vector<std::uint32_t>>{{claim}}
                                : std::vector<std::vector<std::uint32_t>>{
                                      {claim, bodySize}, {100, claim}, {claim, claim}};
        for (const auto& sizes : claims)
            withEachSource(headed(sizes, body), [&](CInputStream& in) {
                CByteBuffer out;
                EXPECT_THAT(takeLines(form.readBlock(in, out, kId)),
                            testing::Not(testing::IsEmpty()));
                EXPECT_LE(out.getSize(), 65536);
            });
    }
}

TEST(AZlibBlock, IsIdSizeCheckAndAZlibStream)
{
    const CBytes raw = toBytes(std::string("reelreel"));
    const CBytes block = written(
        [&](COutputStream& out) { EXPECT_OK(out.writeCompressedData(raw.data(), 8, kId)); });
    ASSERT_GT(block.size(), kZlibHead);
    EXPECT_EQ(CBytes(block.begin(), block.begin() + kZlibHead),
              (CBytes{'a', 'b', 'n', 'k', 8, 0, 0, 0, 0x09, 0x00, 0x24, 0x00}));
    CBytes unpacked(100);
    uLongf size = unpacked.size();
    ASSERT_EQ(
        uncompress(unpacked.data(), &size, block.data() + kZlibHead, block.size() - kZlibHead),
        Z_OK);
    unpacked.resize(size);
    EXPECT_EQ(unpacked, raw);
}

TEST(AZlibBlock, EndsTooEarlyWithItsMessage)
{
    const CBytes raw = mixedData(100);
    withEachSource(headed({101}, zlibPacked(raw)), [](CInputStream& in) {
        CByteBuffer out;
        EXPECT_FAILS_WITH(in.readCompressedData(out, kId), "Premature end of file.");
    });
    CPlainInput noStream(headed({4}, toBytes(std::string("no zlib stream here"))));
    CTrickleInput trickle(noStream.data, 100);
    CByteBuffer out;
    EXPECT_FAILS_WITH(trickle.readCompressedData(out, kId),
                      "zlib inflate error -3 (incorrect header check).");
}

TEST(AZlibBlock, LargerThanTheBuffersRoundTrips)
{
    const CBytes raw = mixedData(3000000);
    const CBytes block = written([&](COutputStream& out) {
        EXPECT_OK(out.writeCompressedData(CByteBuffer(raw.data(), 3000000), kId));
    });
    EXPECT_LT(block.size(), raw.size() * 6 / 10);
    CMemoryReader in(block.data(), static_cast<int>(block.size()));
    CByteBuffer out;
    EXPECT_OK(in.readCompressedData(out, kId));
    EXPECT_EQ(toBytes(out), raw);
}

TEST(ALZ4Block, IsIdSizesCheckAndOneBlockOfLZ4)
{
    const CBytes raw = mixedData(100000);
    const CBytes block = written([&](COutputStream& out) {
        EXPECT_OK(out.writeCompressedDataLZ4(raw.data(), 100000, kId));
    });
    ASSERT_GT(block.size(), kLZ4Head);
    const CBytes body(block.begin() + kLZ4Head, block.end());
    EXPECT_EQ(block, headed({100000, static_cast<std::uint32_t>(body.size())}, body));
    EXPECT_LE(body.size(), lz4Packed(raw).size());
    CBytes unpacked(raw.size());
    EXPECT_EQ(LZ4_decompress_safe(reinterpret_cast<const char*>(body.data()),
                                  reinterpret_cast<char*>(unpacked.data()),
                                  static_cast<int>(body.size()), 100000),
              100000);
    EXPECT_EQ(unpacked, raw);
}

TEST(ALZ4Block, LeavesTheStreamRightBehindItself)
{
    CBytes bytes;
    for (const int size : {0, 30, 5000}) {
        const CBytes raw = mixedData(size);
        const CBytes block = written([&](COutputStream& out) {
            EXPECT_OK(out.writeCompressedDataLZ4(raw.data(), size, 0));
        });
        bytes.insert(bytes.end(), block.begin(), block.end());
    }
    appendU32(bytes, 4711);
    withEachSource(bytes, [](CInputStream& in) {
        for (const int size : {0, 30, 5000}) {
            CByteBuffer out;
            EXPECT_OK(in.readCompressedDataLZ4(out, 0));
            EXPECT_EQ(toBytes(out), mixedData(size));
        }
        std::uint32_t next = 0;
        EXPECT_OK(in.readValue(next));
        EXPECT_EQ(next, 4711u);
    });
}

TEST(ALZ4Block, OfAnotherRawSizeTellsBoth)
{
    const CBytes body = lz4Packed(CBytes(100, 'x'));
    const auto packedSize = static_cast<std::uint32_t>(body.size());
    CByteBuffer out;
    CPlainInput larger(headed({101, packedSize}, body));
    EXPECT_FAILS_WITH(larger.readCompressedDataLZ4(out, kId),
                      "Invalid uncompressed data (expected 101 bytes, read 100).");
    CPlainInput impossible(headed({0xf0000000, packedSize}, body));
    EXPECT_FAILS_WITH(impossible.readCompressedDataLZ4(out, kId),
                      "Invalid uncompressed data (expected 4026531840 bytes, read -1).");
}

TEST(ALZ4Block, CutShortInLastingMemoryFailsWithoutALookAtIt)
{
    CBytes block = headed({100, 50}, CBytes(49, 'x'));
    CMemoryReaderStatic in(block.data(), static_cast<int>(block.size()));
    CByteBuffer out;
    EXPECT_FAILS_WITH(
        in.readCompressedDataLZ4(out, kId),
        "Premature end of memory resource while skipping (pos 16, count 50, size 65).");
}

} // namespace
} // namespace tsm
