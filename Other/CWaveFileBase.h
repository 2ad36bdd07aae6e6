#pragma once

#include "Other/CWaveFormat.h"

#include <cstdint>

namespace tsm {

/// A sound file as its users see it: properties, known once it is open, and samples in reading
/// order. One thread at a time; nothing here belongs on the audio path.
class CWaveFileBase : public CCheckedObject {
public:
    CWaveFileBase() = default;
    virtual ~CWaveFileBase() = default;
    CWaveFileBase(const CWaveFileBase&) = delete;
    CWaveFileBase& operator=(const CWaveFileBase&) = delete;

    /// Reads up to `count` frames: channel c into the array at `channels[c]`, one array for each of
    /// the file's channels, each with room for `count` samples, full scale 1.0 for integers and the
    /// value as it stands for floats. `gotten` receives the frames read, or -1 when nothing was
    /// left before. Errors: the file ends before its samples do, the source's own; the place is
    /// then undefined. [any]
    [[nodiscard]] virtual CError* read(double* const* channels, std::int64_t count,
                                       std::int64_t& gotten) = 0;

    /// Samples a second. Anything that a file may tell: 0, infinity and negative ones too.
    [[nodiscard]] double getSampleRate() const noexcept { return format.sampleRate; }
    [[nodiscard]] std::int32_t getChannelCount() const noexcept { return format.channelCount; }
    /// Frames, as the file claims.
    [[nodiscard]] std::int64_t getSampleCount() const noexcept { return sampleCount; }
    [[nodiscard]] bool getIsFloat() const noexcept { return format.isFloat; }
    /// Bytes of one frame over all channels.
    [[nodiscard]] std::int32_t getFrameSize() const noexcept { return format.frameSize; }
    /// Bits that a sample occupies, and those of them that carry signal.
    [[nodiscard]] std::int32_t getPhysicalBits() const noexcept { return format.physicalBits; }
    [[nodiscard]] std::int32_t getRealBits() const noexcept { return format.realBits; }
    /// Speakers of an extensible format, else 0.
    [[nodiscard]] std::uint32_t getChannelMask() const noexcept { return format.channelMask; }

protected:
    CWaveFormat format;
    std::int64_t sampleCount = 0;
};

} // namespace tsm
