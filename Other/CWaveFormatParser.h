#pragma once

#include "Other/CWaveChunk.h"
#include "Other/CWaveFormat.h"

namespace tsm {

/// Reads the formats of both families of sound files. On success they have passed their check.
class CWaveFormatParser {
public:
    /// The data of a "fmt " chunk (Microsoft, "Multiple Channel Audio Data and WAVE Files", 2007).
    [[nodiscard]] static CError* parseWave(CWaveChunk& chunk, CWaveFormat& format);
    /// The data of a "COMM" chunk (Apple, "Audio Interchange File Format", 1989; "AIFF-C", 1991).
    [[nodiscard]] static CError* parseAiff(CWaveChunk& chunk, bool isCompressed,
                                           CWaveFormat& format);

private:
    [[nodiscard]] static CError* parseTag(CWaveChunk& chunk, std::uint32_t tag,
                                          CWaveFormat& format);
    [[nodiscard]] static CError* parseRealBits(CWaveChunk& chunk, CWaveFormat& format);
    [[nodiscard]] static CError* parseExtensible(CWaveChunk& chunk, CWaveFormat& format);
    [[nodiscard]] static CError* checkChannelCount(const CWaveFormat& format, const char* message);
    [[nodiscard]] static CError* parseExtendedFloat(CWaveChunk& chunk, double& value);
    [[nodiscard]] static CError* parseCompression(CWaveChunk& chunk, CWaveFormat& format);
};

} // namespace tsm
