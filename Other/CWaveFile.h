#pragma once

#include "Core/CByteBuffer.h"
#include "Core/CFileReader.h"
#include "Other/CWaveFileBase.h"

namespace tsm {

/// Reads RIFF WAVE, RF64, Wave64, AIFF and AIFF-C files of 8 to 32 bits or of floats.
///
/// Memory stays bounded at any size of file: 16384 frames at most, and no more than about twice
/// what the source really holds, whatever its headers claim.
class CWaveFile : public CWaveFileBase {
public:
    /// Opens a file and keeps it open. Errors: the file's own, and those below. [any]
    [[nodiscard]] CError* open(const CString& fileName);
    /// Reads the headers of `source`, which stands at its start and must outlive the reading, and
    /// goes to the first frame. Errors: no sound file, a format that isn't read, headers that
    /// contradict themselves. A file that didn't open has no samples. [any]
    [[nodiscard]] CError* open(CPosInputStream& source);

    /// Goes to a frame from 0 to the sample count. Errors: any other, the source's own. [any]
    [[nodiscard]] CError* setSamplePos(std::int64_t frame);
    [[nodiscard]] CError* read(double* const* channels, std::int64_t count,
                               std::int64_t& gotten) override;

    static constexpr int kBufferFrames = 16384;

private:
    [[nodiscard]] CError* openContents(CPosInputStream& source, CWaveContents& contents);
    [[nodiscard]] CError* openRiff(CPosInputStream& source, bool isRF64, CWaveContents& contents);
    [[nodiscard]] CError* openWave64(CPosInputStream& source, CWaveContents& contents);
    [[nodiscard]] CError* openAiff(CPosInputStream& source, CWaveContents& contents);
    [[nodiscard]] CError* fillBuffer(int frameCount);

    CFileReader file;
    CPosInputStream* stream = nullptr;
    std::uint64_t dataPosition = 0;
    std::int64_t framesRead = 0; // from the source; those in the buffer count as read
    CByteBuffer buffer;
    int bufferedFrames = 0;
    int consumedFrames = 0;
};

} // namespace tsm
