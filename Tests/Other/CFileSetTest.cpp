#include "Other/CFileSet.h"

#include "Core/CMemoryReaderStatic.h"
#include "Tests/Support/CChunkBytes.h"
#include "Tests/Support/CTestTree.h"

namespace tsm {
namespace {

/// Three items, their names in another order than their ids, as the file has them.
CBytes setBytes(std::uint32_t version = 1)
{
    return CChunkBytes()
        .u32(version)
        .u32(3)
        .u32(2)
        .u32(4)
        .text("beta")
        .u32(3)
        .raw({1, 2, 3})
        .u32(5)
        .u32(5)
        .text("alpha")
        .u32(0)
        .u32(9)
        .u32(4)
        .text("Zeta")
        .u32(60)
        .zeros(60)
        .bytes;
}

class AFileSet : public testing::Test {
protected:
    template <class Reader>
    CError* load(const CBytes& bytes)
    {
        Reader reader(bytes.data(), static_cast<int>(bytes.size()));
        return set.loadFrom(reader);
    }
    CFileSet set;
};

TEST_F(AFileSet, FindsItsItemsByIdAndOffersThemByName)
{
    ASSERT_OK(load<CMemoryReader>(setBytes()));
    ASSERT_EQ(set.getCount(), 3);
    const CFileSet::CItem* item = set.find(2);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->getName(), "beta");
    EXPECT_EQ(CBytes(item->getData(), item->getData() + item->getSize()), (CBytes{1, 2, 3}));
    EXPECT_EQ(set.find(5)->getSize(), 0);
    EXPECT_EQ(set.find(1), nullptr);
    const char* const names[] = {"Zeta", "alpha", "beta"};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(set.getByName(i).getName(), names[i]);
}

TEST_F(AFileSet, IsWrittenAsItIsRead)
{
    for (const std::uint32_t id : {9U, 2U, 5U})
        set.add(id, "passing", CByteBuffer());
    const std::uint8_t data[60] = {1, 2, 3};
    set.add(2, "beta", CByteBuffer(data, 3));
    set.add(5, "alpha", CByteBuffer());
    const std::uint8_t zeros[60] = {};
    set.add(9, "Zeta", CByteBuffer(zeros, 60));
    EXPECT_EQ(written([&](COutputStream& out) { EXPECT_OK(set.writeTo(out)); }), setBytes());
}

TEST_F(AFileSet, PointsIntoMemoryThatStays)
{
    const CBytes bytes = setBytes();
    ASSERT_OK(load<CMemoryReaderStatic>(bytes));
    EXPECT_EQ(set.find(9)->getData(), bytes.data() + bytes.size() - 60);
    ASSERT_OK(load<CMemoryReader>(bytes));
    EXPECT_NE(set.find(9)->getData(), bytes.data() + bytes.size() - 60);
}

TEST_F(AFileSet, OfAnotherVersionIsEmpty)
{
    ASSERT_OK(load<CMemoryReader>(setBytes()));
    ASSERT_OK(load<CMemoryReader>(setBytes(2)));
    EXPECT_EQ(set.getCount(), 0);
}

TEST_F(AFileSet, KeepsWhatItHadWhereverTheNextIsCut)
{
    ASSERT_OK(load<CMemoryReader>(setBytes()));
    const CBytes whole = setBytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const CBytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(takeMessage(load<CMemoryReader>(cut)), "") << size;
        EXPECT_NE(takeMessage(load<CMemoryReaderStatic>(cut)), "") << size;
        ASSERT_EQ(set.getCount(), 3);
    }
    EXPECT_EQ(takeMessage(load<CMemoryReader>(
                  CChunkBytes().u32(1).u32(1).u32(7).u32(0).u32(0xffffffff).bytes)),
              "The file set ends within an item (4294967295 bytes at 20, size 20).");
}

} // namespace
} // namespace tsm
