#include "Core/CMemoryReader.h"
#include "Other/CWaveFile.h"
#include "Tests/Support/CChunkBytes.h"
#include "Tests/Support/CTestTree.h"
#include "Tests/Support/CWaveReading.h"

#include <functional>
#include <limits>

namespace tsm {
namespace {

using EOrder = CChunkBytes::EOrder;

/// A file in memory, opened and read as a whole.
struct CReadBytes {
    explicit CReadBytes(CBytes fileBytes)
        : bytes(std::move(fileBytes)), stream(bytes.data(), static_cast<int>(bytes.size()))
    {
        if (CError* error = file.open(stream))
            message = takeMessage(error);
        else
            message = takeMessage(readInterleaved(file, samples, 64));
    }
    CBytes bytes;
    CMemoryReader stream;
    CWaveFile file;
    std::vector<double> samples;
    std::string message; // of the first failure
};

std::string messageOf(const CBytes& bytes)
{
    return CReadBytes(bytes).message;
}

CBytes waveFile(const CBytes& format, const CBytes& data)
{
    return CChunkBytes().chunk("fmt ", format).chunk("data", data).file("RIFF", "WAVE");
}

const CBytes kFormat8 = waveFormat(1, 1, 1, 8);

TEST(AWaveHeader, ComesInAnyOrderOfChunks)
{
    const CReadBytes read(CChunkBytes()
                              .chunk("junk", {1, 2, 3})
                              .chunk("data", {128, 0, 255})
                              .chunk("fmt ", kFormat8)
                              .file("RIFF", "WAVE"));
    EXPECT_EQ(read.message, "");
    EXPECT_THAT(read.samples, testing::ElementsAre(0.0, -1.0, 127.0 / 128.0));
}

TEST(AWaveHeader, MayLackTheLastPadByteAndBeFollowedByAnything)
{
    CBytes bytes = CChunkBytes().chunk("fmt ", kFormat8).chunk("data", {0}).file("RIFF", "WAVE");
    bytes.pop_back();
    EXPECT_EQ(messageOf(bytes), ""); // the size still counts the pad byte
    bytes[4] = static_cast<std::uint8_t>(bytes.size() - 8);
    EXPECT_EQ(messageOf(bytes), "");
    bytes.insert(bytes.end(), 100, 0x55);
    EXPECT_EQ(messageOf(bytes), "");
}

TEST(AWaveHeader, CountsPadBytesAsPartOfTheFile)
{
    CChunkBytes chunks;
    for (int i = 0; i < 12; ++i)
        chunks.chunk("junk", {1});
    EXPECT_EQ(messageOf(chunks.chunk("fmt ", kFormat8).chunk("data", {0, 1}).file("RIFF", "WAVE")),
              "");
}

TEST(AWaveFile, RoundsDownToWholeFrames)
{
    const CReadBytes read(waveFile(waveFormat(1, 2, 4, 16), CBytes(11, 0)));
    EXPECT_EQ(read.message, "");
    EXPECT_EQ(read.file.getSampleCount(), 2);
}

TEST(AWaveFile, IsScaledByTheBitsThatSamplesOccupy)
{
    const CReadBytes read(waveFile(waveFormat(1, 1, 3, 20), {0xf0, 0xff, 0x7f, 0x10, 0, 0}));
    EXPECT_THAT(read.samples, testing::ElementsAre(1.0 - 0x1p-19, 0x1p-19));
    EXPECT_EQ(read.file.getRealBits(), 20);
    EXPECT_EQ(read.file.getPhysicalBits(), 24);
}

TEST(AWaveFile, KeepsTheChannelMaskOfAnExtensibleFormat)
{
    CBytes format = waveFormat(65534, 2, 4, 16);
    const CBytes rest = CChunkBytes()
                            .u16(22)
                            .u16(16)
                            .u32(0x60f)
                            .raw({1, 0, 0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xaa, 0, 0x38, 0x9b, 0x71})
                            .bytes;
    format.insert(format.end(), rest.begin(), rest.end());
    EXPECT_EQ(CReadBytes(waveFile(format, {0, 0, 0, 0})).file.getChannelMask(), 0x60fU);
    const auto failsWith = [&](std::size_t at, std::uint8_t value) {
        CBytes other = format;
        other[at] = value;
        return messageOf(waveFile(other, {}));
    };
    EXPECT_EQ(failsWith(14, 0), "Unsupported extensible WAVE format.");
    EXPECT_EQ(failsWith(16, 21), "Unsupported extensible WAVE format (block size '21').");
    EXPECT_EQ(failsWith(24, 2), "Unsupported extensible WAVE format.");
}

TEST(AWaveFormat, IsRefusedByWhatIsWrongWithIt)
{
    struct CRow {
        int tag, channelCount, frameSize, realBits;
        const char* message;
    };
    for (const CRow& row :
         {CRow{1, 256, 256, 8, ""}, CRow{1, 257, 257, 8, "Unsupported channel count '257'."},
          CRow{1, 0, 1, 8, "Unsupported channel count '0'."},
          CRow{2, 1, 2, 16, "Unsupported format tag '2'."},
          CRow{1, 1, 5, 32, "Unsupported physical bit depth '40'."},
          CRow{1, 1, 0, 8, "Unsupported physical bit depth '0'."},
          CRow{1, 1, 8, 64, "Unsupported physical bit depth '64'."},
          CRow{1, 1, 2, 17, "Unsupported real bit depth '17' (physical '16')."},
          CRow{1, 1, 2, 0, "Unsupported real bit depth '0' (physical '16')."},
          CRow{3, 1, 2, 16, "Unsupported IEEE floating point bit depth '16'."},
          CRow{3, 1, 4, 64, "Real bit depth '64' is not equal to physical bit depth '32'."}}) {
        SCOPED_TRACE(row.message);
        EXPECT_EQ(messageOf(waveFile(
                      waveFormat(row.tag, row.channelCount, row.frameSize, row.realBits), {0, 0})),
                  row.message);
    }
}

TEST(ASoundFileOfNoKind, IsRefused)
{
    const CBytes file = waveFile(kFormat8, {1, 2});
    const auto with = [&](std::size_t at, const std::string& text) {
        CBytes bytes = file;
        std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
        return messageOf(bytes);
    };
    EXPECT_EQ(with(0, "RIFX"), "Unrecognized file type '1481001298'.");
    EXPECT_EQ(with(8, "AVI "), "Invalid WAVE header ('AVI ').");
    EXPECT_EQ(with(0, "riff"), "File lacks recognized PCM sound data.");
    EXPECT_EQ(with(12, "fmt_"), "File lacks recognized PCM sound data.");
    EXPECT_EQ(with(12 + 8 + 16, "dat_"), "File lacks recognized PCM sound data.");
    EXPECT_EQ(messageOf(CChunkBytes(EOrder::Big).file("FORM", "8SVX")),
              "Invalid AIFF header ('8SVX').");
    EXPECT_NE(messageOf({}), "");
}

/// An RF64 file with 32-bit sizes as given and a "ds64" chunk that tells others.
CBytes rf64(std::uint32_t riffSize, std::uint32_t dataSize, bool hasDs64, std::uint64_t realData)
{
    CChunkBytes chunks;
    if (hasDs64)
        chunks.chunk("ds64", CChunkBytes().u64(132).u64(realData).zeros(12).bytes);
    chunks.chunk("fmt ", kFormat8).text("data").u32(dataSize).zeros(60);
    return CChunkBytes().text("RF64").u32(riffSize).text("WAVE").raw(chunks.bytes).bytes;
}

TEST(AnRF64File, TakesItsSizesFromDs64WhenTheHeaderSaysSo)
{
    EXPECT_EQ(CReadBytes(rf64(0xffffffff, 0xffffffff, true, 50)).samples.size(), 50U);
    EXPECT_EQ(CReadBytes(rf64(132, 30, true, 50)).samples.size(), 30U);
    EXPECT_EQ(messageOf(rf64(0xffffffff, 50, false, 0)),
              "The required 'ds64' chunk not found when loading sample data.");
    EXPECT_EQ(messageOf(rf64(0xffffffff, 50, true, 0x8000000000000000)),
              "Data composition error (left 60, required 9223372036854775807).");
}

TEST(AnAiffHeader, TellsTheRateAsAnExtendedFloat)
{
    struct CRow {
        int exponent;
        std::uint32_t high, low;
        double rate;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const CRow& row : {CRow{0x400e, 0xac440000, 0, 44100.0},
                            CRow{0x400e, 0xac440000, 0x80000000, 44100.0 + 0x1p-17},
                            CRow{0, 0, 0, 0.0}, CRow{0xc00e, 0xac440000, 0, -44100.0},
                            CRow{0x7fff, 0, 0, infinity}, CRow{0x7ffe, 0xffffffff, 0, infinity}}) {
        const CBytes common = CChunkBytes(EOrder::Big)
                                  .u16(1)
                                  .u32(0)
                                  .u16(8)
                                  .u16(static_cast<std::uint64_t>(row.exponent))
                                  .u32(row.high)
                                  .u32(row.low)
                                  .bytes;
        const CReadBytes read(
            CChunkBytes(EOrder::Big)
                .chunk("COMM", common)
                .chunk("SSND", CChunkBytes(EOrder::Big).u32(3).u32(0).zeros(4).bytes)
                .file("FORM", "AIFF"));
        EXPECT_EQ(read.message, "");
        EXPECT_EQ(read.file.getSampleRate(), row.rate);
        EXPECT_THAT(read.samples, testing::ElementsAre(0.0)); // behind the offset
    }
}

std::string aiffMessage(int channelCount, int bits, const char* compression, std::size_t size = 22)
{
    CBytes common = CChunkBytes(EOrder::Big)
                        .u16(static_cast<std::uint64_t>(channelCount))
                        .u32(0)
                        .u16(static_cast<std::uint64_t>(bits))
                        .u16(0x400e)
                        .u64(0xac44000000000000)
                        .text(compression)
                        .bytes;
    common.resize(size);
    return messageOf(CChunkBytes(EOrder::Big)
                         .chunk("COMM", common)
                         .chunk("SSND", CBytes(8, 0))
                         .file("FORM", "AIFC"));
}

TEST(AnAiffFormat, IsRefusedByWhatIsWrongWithIt)
{
    EXPECT_EQ(aiffMessage(2, 16, "NONE"), "");
    EXPECT_EQ(aiffMessage(2, 64, "fl64"), "");
    EXPECT_EQ(aiffMessage(0, 16, "NONE"), "Unsupported channel count '0'.");
    EXPECT_EQ(aiffMessage(257, 16, "NONE"), "Unsupported channel count '257'.");
    EXPECT_EQ(aiffMessage(2, 12, "NONE"), "Unsupported AIFF file format, bits 12.");
    EXPECT_EQ(aiffMessage(2, 64, "NONE"), "Unsupported physical bit depth '64'.");
    EXPECT_EQ(aiffMessage(2, 16, "fl32"), "Unsupported IEEE floating point bit depth '16'.");
    EXPECT_EQ(aiffMessage(2, 16, "ulaw"), "Unsupported AIFF file format.");
    EXPECT_EQ(aiffMessage(2, 16, "NONE", 15), "Data composition error (left 15, required 16).");
    EXPECT_EQ(aiffMessage(2, 16, "NONE", 17), "Data composition error (left 1, required 2).");
    EXPECT_EQ(aiffMessage(2, 16, "NONE", 18), "Data composition error (left 0, required 4).");
}

TEST(TheMetadataOfAWaveFile, MayNotContradictItself)
{
    const std::string tooLong(0x20001, 'x');
    const CBytes longText = CChunkBytes().text(tooLong).bytes;
    const auto sampler = [](std::uint32_t loops, std::uint32_t more, std::size_t size) {
        return CChunkBytes().zeros(28).u32(loops).u32(more).zeros(size).bytes;
    };
    const auto list = [](const char* type, const char* id, const CBytes& data) {
        return CChunkBytes().text(type).chunk(id, data).bytes;
    };
    const std::string textTooLong = "Invalid or unsupported textual string detected (l=131073).";
    struct CRow {
        const char* id;
        CBytes data;
        std::string message;
    };
    for (const CRow& row :
         {CRow{"smpl", sampler(2, 3, 51), ""},
          CRow{"smpl", CBytes(35, 0), "Data composition error (left 35, required 36)."},
          CRow{"smpl", sampler(2, 0, 47), "Data composition error (left 47, required 48)."},
          CRow{"smpl", sampler(8193, 0, 0),
               "Invalid or unsupported number of sample loops detected (c=8193)."},
          CRow{"smpl", sampler(0, 1048577, 0),
               "Invalid or unsupported sampler data detected (l=1048577)."},
          CRow{"cue ", CChunkBytes().u32(1).zeros(24).bytes, ""},
          CRow{"cue ", CChunkBytes().u32(0xffffffff).bytes,
               "Data composition error (left 0, required 103079215080)."},
          CRow{"LIST", list("INFO", "INAM", {65, 66, 67}), ""},
          CRow{"LIST", list("INFO", "INAM", longText), textTooLong},
          CRow{"LIST", list("wavl", "INAM", longText), ""},
          CRow{"LIST", list("adtl", "labl", CChunkBytes().u32(1).text(tooLong).bytes), textTooLong},
          CRow{"LIST", list("adtl", "ltxt", CBytes(19, 0)),
               "Data composition error (left 19, required 20)."},
          CRow{"LIST", CChunkBytes().text("INFOINAM").u32(9).zeros(8).bytes,
               "Data composition error (left 8, required 9)."},
          CRow{"bext", CBytes(602, 0), ""},
          CRow{"bext", CBytes(601, 0), "Data composition error (left 281, required 282)."},
          CRow{"bext", CBytes(602 + 131073, 0), textTooLong}}) {
        SCOPED_TRACE(testing::Message() << row.id << ' ' << row.message);
        EXPECT_EQ(messageOf(CChunkBytes()
                                .chunk(row.id, row.data)
                                .chunk("fmt ", kFormat8)
                                .chunk("data", {0, 0})
                                .file("RIFF", "WAVE")),
                  row.message);
    }
}

} // namespace
} // namespace tsm
