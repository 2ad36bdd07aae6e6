#include "Other/CAiffParser.h"

#include "Other/CWaveFormatParser.h"
#include "Other/CWaveMetaParser.h"

namespace tsm {

CError* CAiffParser::parse(CWaveChunk& file, CWaveContents& contents)
{
    std::uint32_t form = 0;
    TSM_TRY(file.checkDataLeft(4));
    TSM_TRY(file.readId(form));
    const bool isCompressed = form == chunkId("AIFC");
    if (!isCompressed && form != chunkId("AIFF"))
        TSM_FAIL("@tsmstr_CWaveFile_readAIFF_InvalidHeader Invalid AIFF header ('%1').",
                 chunkIdText(form));
    while (file.hasChunks()) {
        CWaveChunk chunk;
        TSM_TRY(file.openChunk(chunk));
        TSM_TRY(parseChunk(chunk, isCompressed, contents));
    }
    return nullptr;
}

CError* CAiffParser::parseChunk(CWaveChunk& chunk, bool isCompressed, CWaveContents& contents)
{
    switch (chunk.getId()) {
    case chunkId("COMM"):
        TSM_TRY(CWaveFormatParser::parseAiff(chunk, isCompressed, contents.format));
        contents.hasFormat = true;
        break;
    case chunkId("SSND"):
        TSM_TRY(parseSoundData(chunk, contents));
        break;
    case chunkId("NAME"):
    case chunkId("AUTH"):
    case chunkId("(c) "):
    case chunkId("ANNO"):
        TSM_TRY(CWaveMetaParser::parseText(chunk));
        break;
    default:
        break;
    }
    return nullptr;
}

CError* CAiffParser::parseSoundData(CWaveChunk& chunk, CWaveContents& contents)
{
    std::uint32_t offset = 0;
    std::uint32_t blockSize = 0; // alignment for hardware of its day
    TSM_TRY(chunk.checkDataLeft(8));
    TSM_TRY(chunk.readValue(offset));
    TSM_TRY(chunk.readValue(blockSize));
    TSM_TRY(chunk.checkDataLeft(offset));
    chunk.pass(offset);
    contents.hasData = true;
    contents.dataPosition = chunk.getPosition();
    contents.dataSize = chunk.getLeft();
    return nullptr;
}

} // namespace tsm
