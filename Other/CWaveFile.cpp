#include "Other/CWaveFile.h"

#include "Core/CText.h"
#include "Other/CAiffParser.h"
#include "Other/CRiffParser.h"
#include "Other/CWaveSamples.h"

#include <algorithm>

namespace tsm {
namespace {

constexpr int kFirstFillBytes = 65536;

} // namespace

CError* CWaveFile::open(const CString& fileName)
{
    stream = nullptr;
    sampleCount = 0;
    TSM_TRY(file.open(fileName));
    TSM_TRY(open(file));
    return nullptr;
}

CError* CWaveFile::open(CPosInputStream& source)
{
    stream = nullptr;
    sampleCount = 0;
    CWaveContents contents;
    TSM_TRY(openContents(source, contents));
    if (!contents.hasFormat || !contents.hasData)
        TSM_FAIL("@tsmstr_CWaveFile_openFile_InvalidFile File lacks recognized PCM sound data.");
    // Seen to first: a file that doesn't open has no samples.
    TSM_TRY(source.setPosition(contents.dataPosition));
    stream = &source;
    format = contents.format;
    dataPosition = contents.dataPosition;
    sampleCount = contents.dataSize / format.frameSize;
    TSM_TRY(setSamplePos(0));
    return nullptr;
}

CError* CWaveFile::openContents(CPosInputStream& source, CWaveContents& contents)
{
    std::uint32_t id = 0;
    TSM_TRY(source.readValue(id));
    switch (id) {
    case chunkId("RIFF"):
    case chunkId("RF64"):
        TSM_TRY(openRiff(source, id == chunkId("RF64"), contents));
        break;
    case chunkId("riff"):
        TSM_TRY(openWave64(source, contents));
        break;
    case chunkId("FORM"):
        TSM_TRY(openAiff(source, contents));
        break;
    default:
        TSM_FAIL("@tsmstr_CWaveFile_openFile_UnrecognizedFileType "
                 "Unrecognized file type '%1'.",
                 toString(id));
    }
    return nullptr;
}

CError* CWaveFile::openRiff(CPosInputStream& source, bool isRF64, CWaveContents& contents)
{
    std::uint32_t size = 0;
    TSM_TRY(source.readValue(size));
    CWaveChunk chunk(source, 8, size, true);
    CRiffParser parser(chunk, isRF64 ? CRiffParser::EKind::RF64 : CRiffParser::EKind::Wave);
    TSM_TRY(parser.parse(contents));
    return nullptr;
}

CError* CWaveFile::openWave64(CPosInputStream& source, CWaveContents& contents)
{
    constexpr std::uint64_t headerSize = 24;
    std::uint8_t id[CRiffParser::kGuidSize];
    TSM_TRY(source.setPosition(0));
    TSM_TRY(source.read(id, CRiffParser::kGuidSize));
    if (!CRiffParser::isWave64Id(id))
        return nullptr; // no contents
    std::uint64_t size = 0;
    TSM_TRY(source.readValue(size));
    CWaveChunk chunk(source, headerSize, size - std::min(size, headerSize), true);
    CRiffParser parser(chunk, CRiffParser::EKind::Wave64);
    TSM_TRY(parser.parse(contents));
    return nullptr;
}

CError* CWaveFile::openAiff(CPosInputStream& source, CWaveContents& contents)
{
    CWaveChunk head(source, 4, 4, false);
    std::uint32_t size = 0;
    TSM_TRY(head.checkDataLeft(4));
    TSM_TRY(head.readValue(size));
    CWaveChunk chunk(source, 8, size, false);
    TSM_TRY(CAiffParser::parse(chunk, contents));
    return nullptr;
}

CError* CWaveFile::setSamplePos(std::int64_t frame)
{
    if (frame < 0 || frame > sampleCount)
        TSM_FAIL("@tsmstr_CWaveFile_setSamplePos_BeyondEndError "
                 "Changing read position (%1) beyond available sample data (%2) is not allowed.",
                 toString(frame), toString(sampleCount));
    bufferedFrames = 0;
    consumedFrames = 0;
    framesRead = frame;
    if (stream)
        TSM_TRY(
            stream->setPosition(dataPosition + static_cast<std::uint64_t>(frame) *
                                                   static_cast<std::uint64_t>(format.frameSize)));
    return nullptr;
}

CError* CWaveFile::read(double* const* channels, std::int64_t count, std::int64_t& gotten)
{
    std::int64_t done = 0;
    while (done < count) {
        if (consumedFrames == bufferedFrames) {
            const auto next = std::min<std::int64_t>(kBufferFrames, sampleCount - framesRead);
            if (next == 0)
                break;
            TSM_TRY(fillBuffer(static_cast<int>(next)));
        }
        const auto piece =
            static_cast<int>(std::min<std::int64_t>(bufferedFrames - consumedFrames, count - done));
        CWaveSamples::decode(format, buffer.data() + consumedFrames * format.frameSize, piece,
                             channels, done);
        consumedFrames += piece;
        done += piece;
    }
    const bool isAtEnd = consumedFrames == bufferedFrames && framesRead == sampleCount;
    gotten = done == 0 && isAtEnd ? -1 : done;
    return nullptr;
}

CError* CWaveFile::fillBuffer(int frameCount)
{
    bufferedFrames = 0;
    consumedFrames = 0;
    const int bytes = frameCount * format.frameSize;
    // The buffer grows with what has come: a short file that claims much takes little.
    for (int done = 0; done < bytes;) {
        const int room = std::max({buffer.getSize(), kFirstFillBytes, 2 * done});
        const int step = std::min(bytes, room) - done;
        if (buffer.getSize() < done + step)
            buffer.resize(done + step);
        TSM_TRY(stream->read(buffer.data() + done, step));
        done += step;
    }
    bufferedFrames = frameCount;
    framesRead += frameCount;
    return nullptr;
}

} // namespace tsm
