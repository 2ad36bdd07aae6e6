#include "Core/CMemoryReader.h"
#include "Other/CWaveFile.h"
#include "Tests/Support/CChunkBytes.h"
#include "Tests/Support/CSoundFiles.h"
#include "Tests/Support/CTestTree.h"
#include "Tests/Support/CWaveReading.h"

#include <random>

namespace tsm {
namespace {

/// Memory of exactly the file's size, so that the sanitizer sees a step behind its end; notes the
/// largest read, which tells how large a buffer was taken.
class CExactReader : public CMemoryReader {
public:
    explicit CExactReader(const CBytes& bytes)
        : CMemoryReader(bytes.data(), static_cast<int>(bytes.size()))
    {
    }
    CError* read(void* buffer, int count) override
    {
        largestRead = std::max(largestRead, count);
        return CMemoryReader::read(buffer, count);
    }
    int largestRead = 0;
};

/// Opens and reads, as far as the file goes; true when there was no failure.
bool readAll(const CBytes& bytes, std::vector<double>& samples)
{
    const CBytes exact(bytes);
    CExactReader stream(exact);
    CWaveFile file;
    CError* error = file.open(stream);
    if (!error) {
        EXPECT_GE(file.getSampleCount(), 0);
        EXPECT_GE(file.getChannelCount(), 1);
        error = readInterleaved(file, samples, 1000, 5000);
    }
    if (!error) // whatever the sample count, its end can be asked for
        error = file.setSamplePos(file.getSampleCount());
    EXPECT_LE(stream.largestRead, std::max<std::size_t>(65536, 2 * bytes.size()));
    const bool isRead = !error;
    handleError(error);
    return isRead;
}

class ADamagedSoundFile : public testing::TestWithParam<CSoundFileKind> {
protected:
    void SetUp() override
    {
        const CScratchFolder folder;
        ASSERT_NO_FATAL_FAILURE(
            writeSoundFile((folder / "sound").string(), GetParam(), 2, 100, true));
        whole = toBytes(folder.read("sound"));
        ASSERT_TRUE(readAll(whole, samples));
        ASSERT_EQ(samples.size(), 200U);
    }
    CBytes whole;
    std::vector<double> samples;
};

TEST_P(ADamagedSoundFile, FailsOrIsCompleteWhereverItIsCut)
{
    for (std::size_t size = 0; size < whole.size(); ++size) {
        std::vector<double> rest;
        const bool isRead =
            readAll(CBytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)), rest);
        EXPECT_TRUE(!isRead || rest == samples) << "cut to " << size << " bytes";
    }
}

TEST_P(ADamagedSoundFile, NeverLeadsBeyondItsEnd)
{
    constexpr std::uint8_t telling[] = {0x00, 0x01, 0x7f, 0x80, 0xff};
    std::mt19937 random(7);
    const auto below = [&random](std::size_t count) { return random() % count; };
    for (int round = 0; round < 3000; ++round) {
        CBytes bytes = whole;
        for (std::size_t left = 1 + below(4); left > 0; --left) {
            // The header is where it hurts.
            const std::size_t at =
                below(below(4) ? std::min<std::size_t>(160, bytes.size()) : bytes.size());
            const std::size_t run = below(3) ? 1 : 4;
            const std::uint8_t value =
                below(2) ? telling[below(std::size(telling))] : static_cast<std::uint8_t>(random());
            for (std::size_t i = at; i < std::min(at + run, bytes.size()); ++i)
                bytes[i] = value;
        }
        std::vector<double> any;
        readAll(bytes, any);
    }
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, ADamagedSoundFile, testing::ValuesIn(kSoundFileKinds),
                         soundFileTestName);

TEST(ASoundFile, WhoseSamplesBeginBehindItsEndHasNone)
{
    const CBytes good = CChunkBytes()
                            .chunk("fmt ", waveFormat(1, 1, 2, 16))
                            .chunk("data", CBytes(20, 0))
                            .file("RIFF", "WAVE");
    CExactReader whole(good);
    CWaveFile file;
    ASSERT_OK(file.open(whole));
    ASSERT_EQ(file.getSampleCount(), 10);
    const CBytes aiff = CChunkBytes(CChunkBytes::EOrder::Big)
                            .chunk("COMM", CChunkBytes(CChunkBytes::EOrder::Big)
                                               .u16(1)
                                               .u32(10)
                                               .u16(16)
                                               .u16(0x400e)
                                               .u64(0xac44000000000000)
                                               .bytes)
                            .text("SSND")
                            .u32(1000)
                            .u32(500) // the samples begin so far behind this
                            .u32(0)
                            .bytes;
    const CBytes cut = CChunkBytes(CChunkBytes::EOrder::Big)
                           .text("FORM")
                           .u32(4 + 26 + 8 + 1000) // nothing behind that chunk
                           .text("AIFF")
                           .raw(aiff)
                           .bytes;
    CExactReader source(cut);
    EXPECT_NE(takeMessage(file.open(source)), "");
    EXPECT_EQ(file.getSampleCount(), 0);
}

TEST(AShortFileThatClaimsMuch, TakesLittleMemory)
{
    const CBytes bytes = CChunkBytes()
                             .text("RIFF")
                             .u32(4 + 8 + 16 + 8 + 0x20000000)
                             .text("WAVE")
                             .chunk("fmt ", waveFormat(3, 256, 2048, 64))
                             .text("data")
                             .u32(0x20000000)
                             .zeros(100000)
                             .bytes;
    CExactReader stream(bytes);
    CWaveFile file;
    ASSERT_OK(file.open(stream));
    EXPECT_EQ(file.getSampleCount(), 0x20000000 / 2048);
    std::vector<double> samples;
    EXPECT_THAT(takeMessage(readInterleaved(file, samples, 10)),
                testing::StartsWith("Premature end of memory resource"));
    EXPECT_LE(stream.largestRead, 200000);
}

} // namespace
} // namespace tsm
