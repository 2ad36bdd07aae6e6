#include "Other/CRiffParser.h"

#include "Core/CByteOrder.h"
#include "Other/CWaveFormatParser.h"
#include "Other/CWaveMetaParser.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace tsm {
namespace {

constexpr std::uint32_t kSizeElsewhere = 0xffffffff;

constexpr std::uint8_t kGuidRiff[CRiffParser::kGuidSize] = {
    0x72, 0x69, 0x66, 0x66, 0x2e, 0x91, 0xcf, 0x11, 0xa5, 0xd6, 0x28, 0xdb, 0x04, 0xc1, 0x00, 0x00};
constexpr std::uint8_t kGuidWave[CRiffParser::kGuidSize] = {
    0x77, 0x61, 0x76, 0x65, 0xf3, 0xac, 0xd3, 0x11, 0x8c, 0xd1, 0x00, 0xc0, 0x4f, 0x8e, 0xdb, 0x8a};

/// The end that all Wave64 ids share which begin with the four characters of a RIFF id.
constexpr std::uint8_t kGuidTail[12] = {0xf3, 0xac, 0xd3, 0x11, 0x8c, 0xd1,
                                        0x00, 0xc0, 0x4f, 0x8e, 0xdb, 0x8a};

/// The RIFF id of a Wave64 chunk, or 0 for one that is skipped. The two lists of metadata that
/// Wave64 has of its own are among those.
std::uint32_t wave64ChunkId(const std::uint8_t* guid) noexcept
{
    if (std::memcmp(guid + 4, kGuidTail, sizeof kGuidTail) != 0)
        return 0;
    for (const char* known : {"fmt ", "data", "bext"})
        if (std::memcmp(guid, known, 4) == 0)
            return readU32(guid);
    return 0;
}

} // namespace

CRiffParser::CRiffParser(CWaveChunk& file, EKind fileKind) noexcept
    : container(file), kind(fileKind),
      isSizeElsewhere(fileKind == EKind::RF64 && file.getLeft() == kSizeElsewhere)
{
}

bool CRiffParser::isWave64Id(const std::uint8_t* id) noexcept
{
    return std::memcmp(id, kGuidRiff, kGuidSize) == 0;
}

CError* CRiffParser::parse(CWaveContents& contents)
{
    TSM_TRY(checkForm());
    while (container.hasChunks()) {
        CWaveChunk chunk;
        TSM_TRY(openChunk(chunk));
        TSM_TRY(parseChunk(chunk, contents));
    }
    return nullptr;
}

CError* CRiffParser::checkForm()
{
    if (kind == EKind::Wave64) {
        std::uint8_t guid[kGuidSize];
        TSM_TRY(container.checkDataLeft(kGuidSize));
        TSM_TRY(container.read(guid, kGuidSize));
        if (std::memcmp(guid, kGuidWave, kGuidSize) != 0)
            TSM_FAIL("@tsmstr_CWaveFile_readWAVE_InvalidHeader Invalid WAVE64 header.");
        return nullptr;
    }
    std::uint32_t form = 0;
    TSM_TRY(container.checkDataLeft(4));
    TSM_TRY(container.readId(form));
    if (form != chunkId("WAVE"))
        TSM_FAIL("@tsmstr_CWaveFile_readWAVE_InvalidHeader Invalid WAVE header ('%1').",
                 chunkIdText(form));
    return nullptr;
}

CError* CRiffParser::openChunk(CWaveChunk& chunk)
{
    TSM_TRY(kind == EKind::Wave64 ? openWave64Chunk(chunk) : openRiffChunk(chunk));
    return nullptr;
}

CError* CRiffParser::openRiffChunk(CWaveChunk& chunk)
{
    std::uint32_t id = 0;
    std::uint32_t size32 = 0;
    TSM_TRY(container.readChunkHeader(id, size32));
    std::uint64_t size = size32;
    if (isSizeElsewhere && id == chunkId("data")) {
        if (!hasDs64)
            TSM_FAIL("@tsmstr_CWaveFile_readWAVE_DS64ChunkNotFound "
                     "The required 'ds64' chunk not found when loading sample data.");
        size = ds64DataSize;
    }
    TSM_TRY(container.enterChunk(chunk, id, size, 2, false));
    return nullptr;
}

CError* CRiffParser::openWave64Chunk(CWaveChunk& chunk)
{
    constexpr std::uint64_t headerSize = 24;
    std::uint8_t guid[kGuidSize];
    std::uint64_t size = 0;
    TSM_TRY(container.checkDataLeft(headerSize));
    TSM_TRY(container.seek());
    TSM_TRY(container.read(guid, kGuidSize));
    TSM_TRY(container.readValue(size));
    // The size counts its header. One below that wraps to more than any container holds.
    TSM_TRY(container.enterChunk(chunk, wave64ChunkId(guid), size - headerSize, 8, true));
    return nullptr;
}

CError* CRiffParser::parseChunk(CWaveChunk& chunk, CWaveContents& contents)
{
    switch (chunk.getId()) {
    case chunkId("fmt "):
        TSM_TRY(CWaveFormatParser::parseWave(chunk, contents.format));
        contents.hasFormat = true;
        break;
    case chunkId("data"):
        contents.hasData = true;
        contents.dataPosition = chunk.getPosition();
        contents.dataSize = chunk.getLeft();
        break;
    case chunkId("ds64"):
        TSM_TRY(parseSizes(chunk));
        break;
    case chunkId("cue "):
        TSM_TRY(CWaveMetaParser::parseCue(chunk));
        break;
    case chunkId("LIST"):
        TSM_TRY(CWaveMetaParser::parseList(chunk));
        break;
    case chunkId("smpl"):
        TSM_TRY(CWaveMetaParser::parseSampler(chunk));
        break;
    case chunkId("bext"):
        TSM_TRY(CWaveMetaParser::parseBroadcast(chunk));
        break;
    default:
        break;
    }
    return nullptr;
}

CError* CRiffParser::parseSizes(CWaveChunk& chunk)
{
    std::uint64_t riffSize = 0;
    TSM_TRY(chunk.checkDataLeft(16));
    TSM_TRY(chunk.readValue(riffSize));
    TSM_TRY(chunk.readValue(ds64DataSize));
    // The container grows once, whatever a damaged file repeats.
    if (isSizeElsewhere && !hasDs64) {
        constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
        container.grow(static_cast<std::int64_t>(std::min(riffSize, most)) -
                       std::int64_t{kSizeElsewhere});
    }
    hasDs64 = true;
    return nullptr;
}

} // namespace tsm
