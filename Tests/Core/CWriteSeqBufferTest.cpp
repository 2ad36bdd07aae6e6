#include "Core/CWriteSeqBuffer.h"

#include "Core/CByteBuffer.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"

#include <numeric>

namespace tsm {
namespace {

class AWriteSeqBuffer : public testing::Test {
protected:
    void write(const std::vector<int>& counts)
    {
        for (const int count : counts) {
            CBytes bytes(static_cast<std::size_t>(count));
            std::iota(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(all.size()));
            EXPECT_OK(buffer.write(bytes.data(), count));
            all.insert(all.end(), bytes.begin(), bytes.end());
        }
    }
    std::vector<int> chunkSizes()
    {
        CRecordingOutput out;
        EXPECT_OK(buffer.writeTo(out));
        EXPECT_EQ(out.data, all);
        return out.sizes;
    }
    CWriteSeqBuffer buffer{256};
    CBytes all;
};

TEST_F(AWriteSeqBuffer, FillsAChunkBeforeItBeginsTheNext)
{
    write({100, 156});
    EXPECT_EQ(chunkSizes(), (std::vector<int>{256}));
    write({1});
    EXPECT_EQ(chunkSizes(), (std::vector<int>{256, 1}));
    write({255, 10, 247});
    EXPECT_EQ(chunkSizes(), (std::vector<int>{256, 256, 256, 1}));
}

TEST_F(AWriteSeqBuffer, BeginsAChunkAsLargeAsTheRestOfAWrite)
{
    write({1000});
    EXPECT_EQ(chunkSizes(), (std::vector<int>{256, 744}));
    write({0, 257});
    EXPECT_EQ(chunkSizes(), (std::vector<int>{256, 744, 257}));
    EXPECT_EQ(buffer.getSize(), 1257);
}

TEST_F(AWriteSeqBuffer, HandsAllDataOverInOnePiece)
{
    for (const auto& counts : {std::vector<int>{}, {5}, {256}, {200, 200, 200}}) {
        all.clear();
        write(counts);
        CByteBuffer out(" former content that is longer than fits in place ...", 50);
        buffer.takeData(out);
        EXPECT_EQ(toBytes(out), all);
        EXPECT_EQ(buffer.getSize(), 0);
        CByteBuffer again;
        buffer.takeData(again);
        EXPECT_TRUE(again.isEmpty());
    }
}

TEST_F(AWriteSeqBuffer, RefusesToGrowAbove2GB)
{
    write({10});
    // Only the count is looked at before the refusal, never the bytes.
    EXPECT_FAILS_WITH(buffer.write(all.data(), 0x7fffffff),
                      "The size of the stream is above allowed 2 GB.");
    EXPECT_EQ(chunkSizes(), (std::vector<int>{10}));
}

TEST(AByteBuffer, KeepsItsBytesWhenItGrowsMovesAndIsCopied)
{
    for (const int size : {0, 1, 48, 49, 1000}) {
        SCOPED_TRACE(size);
        CBytes bytes(static_cast<std::size_t>(size), 0x5a);
        CByteBuffer first(bytes.data(), size);
        EXPECT_EQ(first.isInline(), size <= 48);
        CByteBuffer copy(first);
        CByteBuffer moved(std::move(first));
        CByteBuffer assigned("x", 1);
        assigned = copy;
        EXPECT_TRUE(moved == copy && assigned == copy);
        moved.resize(size + 100);
        moved.resize(size);
        EXPECT_EQ(toBytes(moved), bytes);
        assigned = std::move(moved);
        EXPECT_EQ(toBytes(assigned), bytes);
        EXPECT_TRUE(moved.isEmpty()); // NOLINT(bugprone-use-after-move): it is empty by contract
    }
}

} // namespace
} // namespace tsm
