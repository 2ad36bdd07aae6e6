#include "Core/CInputZipStream.h"
#include "Core/COutputZipStream.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"

#include <random>
#include <zlib.h>

namespace tsm {
namespace {

CBytes randomBytes(int size)
{
    std::mt19937 random(2);
    CBytes bytes(static_cast<std::size_t>(size));
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

TEST(AZipStream, GivesBackWhatWentInWhateverThePieces)
{
    const CBytes raw = randomBytes(150000);
    for (const int level : {-1, 0, 1, 9}) {
        SCOPED_TRACE(level);
        CRecordingOutput target;
        COutputZipStream out;
        ASSERT_OK(out.open(target, level));
        for (int at = 0, piece = 1; at < 150000;
             at += piece, piece = std::min(150000 - at, piece * 3))
            EXPECT_OK(out.write(raw.data() + at, piece));
        EXPECT_OK(out.close());
        for (std::size_t i = 0; i + 1 < target.sizes.size(); ++i)
            EXPECT_EQ(target.sizes[i], 32768) << "buffers are handed on when they are full";

        CTrickleInput source(target.data, 1000);
        CInputZipStream in;
        ASSERT_OK(in.open(source));
        CBytes back(raw.size());
        EXPECT_OK(in.read(back.data(), 1));
        EXPECT_OK(in.read(back.data() + 1, 99999));
        EXPECT_OK(in.read(back.data() + 100000, 50000));
        EXPECT_EQ(back, raw);
        EXPECT_FAILS_WITH(in.read(back.data(), 1), "Premature end of file.");
        EXPECT_OK(in.close());
    }
}

TEST(AZipStream, EndsBehindItsMarkWhateverFollows)
{
    CBytes data(100);
    uLongf size = data.size();
    ASSERT_EQ(compress(data.data(), &size, data.data(), 10), Z_OK);
    CTrickleInput source(data, 100000); // zeros follow the stream
    CInputZipStream in;
    std::uint8_t byte[11];
    ASSERT_OK(in.open(source));
    EXPECT_FAILS_WITH(in.read(byte, 11), "Premature end of file.");
    EXPECT_FAILS_WITH(in.read(byte, 1), "Premature end of file.");
}

TEST(AZipStream, NeedsToBeOpen)
{
    CInputZipStream in;
    COutputZipStream out;
    std::uint8_t byte = 0;
    EXPECT_FAILS_WITH(in.read(&byte, 1), "Input stream not specified.");
    EXPECT_FAILS_WITH(out.write(&byte, 1), "Output stream not specified.");
    EXPECT_OK(in.close());
    EXPECT_OK(out.close());
}

TEST(AZipStream, RefusesAnUnknownLevel)
{
    CRecordingOutput target;
    COutputZipStream out;
    EXPECT_FAILS_WITH(out.open(target, 77), "zlib deflateInit error -2 ().");
    EXPECT_FAILS_WITH(out.write("", 1), "Output stream not specified.");
}

TEST(AZipStream, HandsOnTheTargetsFailureAndEnds)
{
    const CBytes raw = randomBytes(100000);
    CRecordingOutput target;
    target.failAt = 1;
    COutputZipStream out;
    ASSERT_OK(out.open(target, -1));
    EXPECT_FAILS_WITH(out.write(raw.data(), 100000), "The disk is full.");
    EXPECT_FAILS_WITH(out.close(), "The disk is full.");
    EXPECT_OK(out.close());
    ASSERT_OK(out.open(target, -1)) << "it may be used anew";
    target.failAt = -1;
    EXPECT_OK(out.close());
}

TEST(AZipStream, WritesItsRestWhenItGoes)
{
    CRecordingOutput target;
    {
        COutputZipStream out;
        ASSERT_OK(out.open(target, -1));
        EXPECT_OK(out.write("reel", 4));
    }
    char text[4];
    uLongf size = sizeof(text);
    EXPECT_EQ(
        uncompress(reinterpret_cast<Bytef*>(text), &size, target.data.data(), target.data.size()),
        Z_OK);
    EXPECT_EQ(std::string(text, size), "reel");
}

} // namespace
} // namespace tsm
