#include "Other/CWaveFormatParser.h"

#include "Core/CText.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace tsm {
namespace {

constexpr std::uint32_t kTagInteger = 1;
constexpr std::uint32_t kTagFloat = 3;
constexpr std::uint32_t kTagExtensible = 65534;

constexpr int kGuidSize = 16;
constexpr std::uint8_t kGuidInteger[kGuidSize] = {0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00,
                                                  0x80, 0x00, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71};
constexpr std::uint8_t kGuidFloat[kGuidSize] = {0x03, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10, 0x00,
                                                0x80, 0x00, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71};

/// Reads a number of one width into a wider field.
template <class T, class Field>
CError* readAs(CWaveChunk& chunk, Field& field)
{
    T value = 0;
    TSM_TRY(chunk.readValue(value));
    field = static_cast<Field>(value);
    return nullptr;
}

} // namespace

CError* CWaveFormatParser::parseWave(CWaveChunk& chunk, CWaveFormat& format)
{
    std::uint32_t tag = 0;
    std::uint32_t byteRate = 0; // follows from the rest, and is often wrong
    TSM_TRY(chunk.checkDataLeft(14));
    TSM_TRY(readAs<std::uint16_t>(chunk, tag));
    TSM_TRY(readAs<std::uint16_t>(chunk, format.channelCount));
    TSM_TRY(checkChannelCount(format, "@tsmstr_CWaveFile_readWAVEFormat_ChannelCountError "
                                      "Unsupported channel count '%1'."));
    TSM_TRY(readAs<std::uint32_t>(chunk, format.sampleRate));
    TSM_TRY(chunk.readValue(byteRate));
    TSM_TRY(readAs<std::uint16_t>(chunk, format.frameSize));
    format.physicalBits = format.frameSize * 8 / format.channelCount;
    TSM_TRY(parseTag(chunk, tag, format));
    TSM_TRY(format.check());
    return nullptr;
}

CError* CWaveFormatParser::checkChannelCount(const CWaveFormat& format, const char* message)
{
    if (format.channelCount < 1 || format.channelCount > CWaveFormat::kMaxChannels)
        TSM_FAIL(message, toString(format.channelCount));
    return nullptr;
}

CError* CWaveFormatParser::parseTag(CWaveChunk& chunk, std::uint32_t tag, CWaveFormat& format)
{
    format.channelMask = 0;
    format.isFloat = tag == kTagFloat;
    if (tag == kTagExtensible)
        TSM_TRY(parseExtensible(chunk, format));
    else if (tag == kTagInteger || tag == kTagFloat)
        TSM_TRY(parseRealBits(chunk, format));
    else
        TSM_FAIL("@tsmstr_CWaveFile_readWAVEFormat_TagError Unsupported format tag '%1'.",
                 toString(tag));
    return nullptr;
}

CError* CWaveFormatParser::parseRealBits(CWaveChunk& chunk, CWaveFormat& format)
{
    TSM_TRY(chunk.checkDataLeft(2));
    TSM_TRY(readAs<std::uint16_t>(chunk, format.realBits));
    return nullptr;
}

CError* CWaveFormatParser::parseExtensible(CWaveChunk& chunk, CWaveFormat& format)
{
    std::uint16_t bits = 0;
    TSM_TRY(chunk.checkDataLeft(2));
    TSM_TRY(chunk.readValue(bits));
    if (bits == 0)
        TSM_FAIL("@tsmstr_CWaveFile_readWAVEFormat_WaveExtError "
                 "Unsupported extensible WAVE format.");
    std::uint16_t extensionSize = 0;
    TSM_TRY(chunk.checkDataLeft(2));
    TSM_TRY(chunk.readValue(extensionSize));
    if (extensionSize < 22)
        TSM_FAIL("@tsmstr_CWaveFile_readWAVEFormat_WaveExtErrorSize "
                 "Unsupported extensible WAVE format (block size '%1').",
                 toString(static_cast<int>(extensionSize)));
    std::uint8_t guid[kGuidSize];
    TSM_TRY(chunk.checkDataLeft(22));
    TSM_TRY(readAs<std::uint16_t>(chunk, format.realBits));
    TSM_TRY(chunk.readValue(format.channelMask));
    TSM_TRY(chunk.read(guid, kGuidSize));
    format.isFloat = std::memcmp(guid, kGuidFloat, kGuidSize) == 0;
    if (!format.isFloat && std::memcmp(guid, kGuidInteger, kGuidSize) != 0)
        TSM_FAIL("@tsmstr_CWaveFile_readWAVEFormat_WaveExtFmtError "
                 "Unsupported extensible WAVE format.");
    return nullptr;
}

CError* CWaveFormatParser::parseAiff(CWaveChunk& chunk, bool isCompressed, CWaveFormat& format)
{
    std::uint32_t frameCount = 0; // the sound data's own size counts
    TSM_TRY(chunk.checkDataLeft(16));
    TSM_TRY(readAs<std::uint16_t>(chunk, format.channelCount));
    TSM_TRY(checkChannelCount(format, "@tsmstr_CWaveFile_readAIFFFormat_ChannelCountError "
                                      "Unsupported channel count '%1'."));
    TSM_TRY(chunk.readValue(frameCount));
    TSM_TRY(readAs<std::uint16_t>(chunk, format.realBits));
    TSM_TRY(chunk.checkDataLeft(2)); // the rest of the rate's ten bytes
    TSM_TRY(parseExtendedFloat(chunk, format.sampleRate));
    const int bits = format.realBits;
    if (bits != 8 && bits != 16 && bits != 24 && bits != 32 && bits != 64)
        TSM_FAIL("@tsmstr_CWaveFile_readAIFFFormat_UnsupportedBitFormat "
                 "Unsupported AIFF file format, bits %1.",
                 toString(bits));
    format.physicalBits = bits;
    format.frameSize = format.channelCount * bits / 8;
    format.isFloat = false;
    format.isLittleEndian = false;
    format.isUnsigned8 = false;
    if (isCompressed)
        TSM_TRY(parseCompression(chunk, format));
    TSM_TRY(format.check());
    return nullptr;
}

CError* CWaveFormatParser::parseExtendedFloat(CWaveChunk& chunk, double& value)
{
    std::uint16_t signAndExponent = 0;
    std::uint32_t high = 0;
    std::uint32_t low = 0;
    TSM_TRY(chunk.readValue(signAndExponent));
    TSM_TRY(chunk.readValue(high));
    TSM_TRY(chunk.readValue(low));
    const int exponent = signAndExponent & 0x7fff;
    // A mantissa of 0 gives 0 at any exponent but the highest. 16383 is the exponent's bias; the
    // mantissa has one bit before its point.
    value = exponent == 0x7fff
                ? std::numeric_limits<double>::infinity()
                : std::ldexp(high, exponent - 16414) + std::ldexp(low, exponent - 16446);
    if (signAndExponent & 0x8000)
        value = -value;
    return nullptr;
}

CError* CWaveFormatParser::parseCompression(CWaveChunk& chunk, CWaveFormat& format)
{
    std::uint32_t compression = 0;
    TSM_TRY(chunk.checkDataLeft(4));
    TSM_TRY(chunk.readId(compression));
    switch (compression) {
    case chunkId("FL32"):
    case chunkId("fl32"):
    case chunkId("fl64"):
        format.isFloat = true;
        break;
    case chunkId("sowt"): // "twos" backwards
        format.isLittleEndian = true;
        break;
    case chunkId("NONE"):
        break;
    default:
        TSM_FAIL("@tsmstr_CWaveFile_readAIFFFormat_UnsupportedFormat "
                 "Unsupported AIFF file format.");
    }
    return nullptr;
}

} // namespace tsm
