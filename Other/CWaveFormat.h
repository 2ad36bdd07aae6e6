#pragma once

#include "Core/CError.h"

#include <cstdint>

namespace tsm {

/// How the samples of a sound file lie in its frames.
struct CWaveFormat {
    double sampleRate = 0.0;       // samples a second, as the file tells it: any number at all
    std::int32_t channelCount = 0; // 1 to kMaxChannels
    std::int32_t frameSize = 0;    // bytes of one sample of every channel, with what pads them
    std::int32_t physicalBits = 0; // bits that a sample occupies
    std::int32_t realBits = 0;     // bits of those that carry signal
    std::uint32_t channelMask = 0; // speakers of an extensible format, else 0
    bool isFloat = false;
    bool isLittleEndian = true;
    bool isUnsigned8 = true; // 8-bit samples are offset by 128

    static constexpr int kMaxChannels = 256;

    /// Errors: a depth of bits that isn't read, or one that contradicts the frame's size.
    [[nodiscard]] CError* check() const;

private:
    [[nodiscard]] CError* checkInteger() const;
    [[nodiscard]] CError* checkFloat() const;
};

/// What the headers of a sound file tell: the format and where the samples lie. Sizes and places
/// are those that the file claims; it may end before them.
struct CWaveContents {
    CWaveFormat format;
    bool hasFormat = false;
    bool hasData = false;
    std::uint64_t dataPosition = 0; // from the start of the stream, in bytes
    std::int64_t dataSize = 0;      // bytes
};

} // namespace tsm
