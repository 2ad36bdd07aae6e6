#include "Other/CWaveFile.h"

#include "Tests/Support/CSoundFiles.h"
#include "Tests/Support/CTestTree.h"
#include "Tests/Support/CWaveReading.h"

#include <cstring>

namespace tsm {
namespace {

/// The file's samples, bit by bit those that libsndfile reads from it.
void compareWithSndfile(const std::string& path, int piece)
{
    SF_INFO info;
    const std::vector<double> expected = readBySndfile(path, info);
    CWaveFile file;
    std::vector<double> samples;
    ASSERT_OK(file.open(CString::fromUtf8(path)));
    ASSERT_EQ(file.getChannelCount(), info.channels);
    EXPECT_EQ(file.getSampleCount(), info.frames);
    EXPECT_EQ(file.getSampleRate(), info.samplerate);
    ASSERT_OK(readInterleaved(file, samples, piece));
    ASSERT_EQ(samples.size(), expected.size());
    EXPECT_EQ(std::memcmp(samples.data(), expected.data(), 8 * samples.size()), 0);
}

class ASoundFile : public testing::TestWithParam<CSoundFileKind> {
protected:
    /// Libsndfile leaves out the bytes that fill a Wave64 file's last chunk up to a multiple of 8;
    /// the reader takes them for part of the chunk. So there all have none.
    [[nodiscard]] int framesFor(int count) const
    {
        const bool isWave64 = (GetParam().format & SF_FORMAT_TYPEMASK) == SF_FORMAT_W64;
        return isWave64 ? count / 8 * 8 + 8 : count;
    }
    CScratchFolder folder;
    const std::string path = (folder / "sound").string();
};

TEST_P(ASoundFile, HasTheSamplesThatLibsndfileReads)
{
    struct CRow {
        int channelCount, frameCount, piece;
    };
    // Below, at and behind a buffer's end; with odd sizes; one channel to many.
    for (const CRow& row : {CRow{1, 1, 10}, CRow{1, 16385, 1000}, CRow{2, 40001, 16384},
                            CRow{7, 333, 40000}, CRow{256, 11, 3}}) {
        SCOPED_TRACE(testing::Message() << row.channelCount << " x " << row.frameCount);
        ASSERT_NO_FATAL_FAILURE(
            writeSoundFile(path, GetParam(), row.channelCount, framesFor(row.frameCount)));
        compareWithSndfile(path, row.piece);
    }
}

TEST_P(ASoundFile, MayCarryTexts)
{
    ASSERT_NO_FATAL_FAILURE(writeSoundFile(path, GetParam(), 1, framesFor(333), true));
    compareWithSndfile(path, 100);
}

TEST(AWave64File, EndsWithWholeUnits)
{
    const CScratchFolder folder;
    const std::string path = (folder / "sound").string();
    ASSERT_NO_FATAL_FAILURE(
        writeSoundFile(path, {"w64-16", SF_FORMAT_W64 | SF_FORMAT_PCM_16}, 1, 11));
    CWaveFile file;
    EXPECT_FAILS_WITH(file.open(CString::fromUtf8(path)),
                      "Data composition error (left 0, required 2).");
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, ASoundFile, testing::ValuesIn(kSoundFileKinds),
                         soundFileTestName);

TEST(ACompressedAiff, IsReadByTheNamesOfItsSamplesThatAreKnown)
{
    struct CRow {
        int format;
        const char *written, *read; // what libsndfile calls the form, and what the reader knows
    };
    const CScratchFolder folder;
    const std::string path = (folder / "sound").string();
    const CString name = CString::fromUtf8(path);
    for (const CRow& row :
         {CRow{SF_FORMAT_AIFF | SF_FORMAT_DOUBLE, "FL64", "fl64"},
          CRow{SF_FORMAT_AIFF | SF_FORMAT_PCM_24 | SF_ENDIAN_LITTLE, "42n1", "sowt"},
          CRow{SF_FORMAT_AIFF | SF_FORMAT_PCM_32 | SF_ENDIAN_LITTLE, "23ni", "sowt"},
          CRow{SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_BIG, "twos", "NONE"}}) {
        SCOPED_TRACE(row.written);
        ASSERT_NO_FATAL_FAILURE(writeSoundFile(path, {row.read, row.format}, 2, 500));
        std::string bytes = folder.read("sound");
        ASSERT_NE(bytes.find(row.written), bytes.npos);
        CWaveFile file;
        EXPECT_FAILS_WITH(file.open(name), "Unsupported AIFF file format.");
        folder.write("sound", bytes.replace(bytes.find(row.written), 4, row.read));
        compareWithSndfile(path, 100);
    }
}

/// Three stereo buffers and a bit, of 16 bits.
class AnOpenSoundFile : public testing::Test {
protected:
    static constexpr int kFrames = 50000;
    void SetUp() override
    {
        const std::string path = (folder / "sound").string();
        ASSERT_NO_FATAL_FAILURE(writeSoundFile(path, kSoundFileKinds[1], 2, kFrames));
        ASSERT_OK(file.open(CString::fromUtf8(path)));
        ASSERT_OK(readInterleaved(file, all, kFrames));
        ASSERT_EQ(all.size(), 2U * kFrames);
    }
    std::int64_t readOne()
    {
        double left = 0.0;
        double right = 0.0;
        double* const channels[] = {&left, &right};
        std::int64_t gotten = 0;
        EXPECT_OK(file.read(channels, 1, gotten));
        return gotten;
    }
    CScratchFolder folder;
    CWaveFile file;
    std::vector<double> all;
};

TEST_F(AnOpenSoundFile, GoesToAnyFrame)
{
    for (const int frame : {49999, 16384, 0, 16383, 20000}) {
        std::vector<double> samples;
        ASSERT_OK(file.setSamplePos(frame));
        ASSERT_OK(readInterleaved(file, samples, 777));
        const std::vector<double> expected(all.begin() + 2 * frame, all.end());
        EXPECT_EQ(samples, expected) << frame;
    }
}

TEST_F(AnOpenSoundFile, EndsBehindItsLastFrame)
{
    EXPECT_EQ(readOne(), -1);
    EXPECT_OK(file.setSamplePos(kFrames - 1));
    EXPECT_EQ(readOne(), 1);
    EXPECT_EQ(readOne(), -1);
    EXPECT_OK(file.setSamplePos(kFrames));
    EXPECT_EQ(readOne(), -1);
    EXPECT_FAILS_WITH(file.setSamplePos(kFrames + 1),
                      "Changing read position (50001) beyond available sample data (50000) is not "
                      "allowed.");
    EXPECT_FAILS_WITH(file.setSamplePos(-1),
                      "Changing read position (-1) beyond available sample data (50000) is not "
                      "allowed.");
}

TEST(AMissingSoundFile, FailsAsAnyFile)
{
    CWaveFile file;
    EXPECT_THAT(takeMessage(file.open("/no/such/folder/sound.wav")),
                testing::StartsWith("Unable to open file"));
}

} // namespace
} // namespace tsm
