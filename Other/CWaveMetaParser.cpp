#include "Other/CWaveMetaParser.h"

#include "Core/CText.h"

namespace tsm {
namespace {

constexpr std::uint64_t kCuePointBytes = 24;
constexpr std::uint64_t kLoopBytes = 24;
// Date, time, time reference, version, UMID, loudness and reserve.
constexpr std::uint64_t kBroadcastRestBytes = 10 + 8 + 8 + 2 + 64 + 10 + 180;
// Id, length, purpose, country, language, dialect and code page of a labelled piece of text.
constexpr std::uint64_t kLabelledTextBytes = 20;

} // namespace

CError* CWaveMetaParser::parseCue(CWaveChunk& chunk)
{
    std::uint32_t count = 0;
    TSM_TRY(chunk.checkDataLeft(4));
    TSM_TRY(chunk.readValue(count));
    TSM_TRY(chunk.checkDataLeft(count * kCuePointBytes));
    return nullptr;
}

CError* CWaveMetaParser::parseList(CWaveChunk& chunk)
{
    std::uint32_t type = 0;
    TSM_TRY(chunk.checkDataLeft(4));
    TSM_TRY(chunk.readId(type));
    const bool isInfo = type == chunkId("INFO");
    if (!isInfo && type != chunkId("adtl"))
        return nullptr;
    while (chunk.hasChunks()) {
        CWaveChunk item;
        TSM_TRY(chunk.openChunk(item));
        TSM_TRY(isInfo ? parseInfoItem(item) : parseMarkerItem(item));
    }
    return nullptr;
}

CError* CWaveMetaParser::parseInfoItem(CWaveChunk& item)
{
    TSM_TRY(checkText(item, "@tsmstr_CWaveFile_readWAVELIST_StringTooLong "
                            "Invalid or unsupported textual string detected (l=%1)."));
    return nullptr;
}

CError* CWaveMetaParser::parseMarkerItem(CWaveChunk& item)
{
    if (item.getId() == chunkId("ltxt"))
        TSM_TRY(item.checkDataLeft(kLabelledTextBytes));
    if (item.getId() == chunkId("labl")) {
        TSM_TRY(item.checkDataLeft(4)); // the marker's id
        TSM_TRY(checkText(item, "@tsmstr_CWaveFile_readWAVEListADTLlabl_StringTooLong "
                                "Invalid or unsupported textual string detected (l=%1)."));
    }
    return nullptr;
}

CError* CWaveMetaParser::parseSampler(CWaveChunk& chunk)
{
    std::uint32_t fields[9];
    TSM_TRY(chunk.checkDataLeft(sizeof(fields)));
    for (std::uint32_t& field : fields)
        TSM_TRY(chunk.readValue(field));
    const std::uint32_t loopCount = fields[7];
    const std::uint32_t samplerBytes = fields[8];
    if (loopCount > kMaxLoops)
        TSM_FAIL("@tsmstr_CWaveFile_readWAVEsmpl_TooManyLoops "
                 "Invalid or unsupported number of sample loops detected (c=%1).",
                 toString(loopCount));
    TSM_TRY(chunk.checkDataLeft(loopCount * kLoopBytes));
    if (samplerBytes > kMaxSamplerBytes)
        TSM_FAIL("@tsmstr_CWaveFile_readWAVEsmpl_SamplerDataTooLong "
                 "Invalid or unsupported sampler data detected (l=%1).",
                 toString(samplerBytes));
    TSM_TRY(chunk.checkDataLeft(samplerBytes));
    return nullptr;
}

CError* CWaveMetaParser::parseBroadcast(CWaveChunk& chunk)
{
    // Description, originator and its reference.
    constexpr std::uint64_t kTextBytes[] = {256, 32, 32};
    for (const std::uint64_t textBytes : kTextBytes)
        TSM_TRY(chunk.checkDataLeft(textBytes));
    TSM_TRY(chunk.checkDataLeft(kBroadcastRestBytes));
    TSM_TRY(parseText(chunk)); // the coding history
    return nullptr;
}

CError* CWaveMetaParser::parseText(CWaveChunk& chunk)
{
    TSM_TRY(checkText(chunk, "@tsmstr_CWaveFile_readBWFString_StringTooLong "
                             "Invalid or unsupported textual string detected (l=%1)."));
    return nullptr;
}

CError* CWaveMetaParser::checkText(const CWaveChunk& chunk, const char* message)
{
    if (chunk.getLeft() > kMaxTextBytes)
        TSM_FAIL(message, toString(chunk.getLeft()));
    return nullptr;
}

} // namespace tsm
