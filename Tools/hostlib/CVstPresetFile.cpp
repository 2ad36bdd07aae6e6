#include "Tools/hostlib/CVstPresetFile.h"

#include "Tools/hostlib/CVstString.h"

#include <cstring>

namespace tsm {

namespace {

constexpr std::string_view kFileId = "VST3";
constexpr std::string_view kListId = "List";
constexpr std::string_view kComponentId = "Comp";
constexpr std::string_view kControllerId = "Cont";
constexpr std::int32_t kVersion = 1;
constexpr std::size_t kIdSize = 4;
constexpr std::size_t kClassAt = 8;
constexpr std::size_t kClassSize = 32;
constexpr std::size_t kListOffsetAt = 40;
constexpr std::size_t kHeaderSize = 48;
constexpr std::size_t kEntrySize = 20;
constexpr std::int32_t kMaxEntries = 128;

/// Numbers are little-endian, as this machine is.
template <class T>
T readNumber(std::string_view bytes, std::size_t at)
{
    T number = 0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

template <class T>
void appendNumber(std::string& bytes, T number)
{
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

CError* readChunk(std::string_view bytes, std::string_view entry, std::string_view& chunk)
{
    const auto offset = readNumber<std::uint64_t>(entry, kIdSize);
    const auto size = readNumber<std::uint64_t>(entry, kIdSize + sizeof offset);
    if (offset > bytes.size() || size > bytes.size() - offset)
        TSM_FAIL("the preset file is damaged: a chunk lies beyond its end");
    chunk = bytes.substr(offset, size);
    return nullptr;
}

CError* findList(std::string_view bytes, std::string_view& entries)
{
    const auto offset = readNumber<std::uint64_t>(bytes, kListOffsetAt);
    constexpr std::size_t kListHead = kIdSize + sizeof(std::int32_t);
    if (offset > bytes.size() || bytes.size() - offset < kListHead ||
        bytes.substr(offset, kIdSize) != kListId)
        TSM_FAIL("the preset file is damaged: it has no list of chunks");
    const auto count = readNumber<std::int32_t>(bytes, offset + kIdSize);
    const std::string_view rest = bytes.substr(offset + kListHead);
    if (count < 0 || count > kMaxEntries ||
        rest.size() < static_cast<std::size_t>(count) * kEntrySize)
        TSM_FAIL("the preset file is damaged: its list of chunks is cut off");
    entries = rest.substr(0, static_cast<std::size_t>(count) * kEntrySize);
    return nullptr;
}

} // namespace

CError* CVstPresetFile::parse(std::string_view bytes, CVstPresetFile& file)
{
    if (bytes.size() < kHeaderSize || bytes.substr(0, kIdSize) != kFileId)
        TSM_FAIL("this is no preset file");
    if (readNumber<std::int32_t>(bytes, kIdSize) != kVersion)
        TSM_FAIL("the preset file is of an unknown version");
    CVstPresetFile fresh;
    if (!parseIdText(bytes.substr(kClassAt, kClassSize), fresh.classId))
        TSM_FAIL("the preset file is damaged: it names no class");
    std::string_view entries;
    TSM_TRY(findList(bytes, entries));
    bool hasComponent = false;
    for (; !entries.empty(); entries.remove_prefix(kEntrySize)) {
        std::string_view chunk;
        TSM_TRY(readChunk(bytes, entries, chunk));
        const std::string_view id = entries.substr(0, kIdSize);
        if (id == kControllerId)
            fresh.controllerState = chunk;
        if (id != kComponentId)
            continue;
        fresh.componentState = chunk;
        hasComponent = true;
    }
    if (!hasComponent)
        TSM_FAIL("the preset file has no state of a component");
    file = std::move(fresh);
    return nullptr;
}

std::string CVstPresetFile::toBytes() const
{
    std::string chunks = componentState;
    std::string entries(kComponentId);
    appendNumber<std::int64_t>(entries, kHeaderSize);
    appendNumber(entries, static_cast<std::int64_t>(componentState.size()));
    if (controllerState) {
        entries += kControllerId;
        appendNumber(entries, static_cast<std::int64_t>(kHeaderSize + chunks.size()));
        appendNumber(entries, static_cast<std::int64_t>(controllerState->size()));
        chunks += *controllerState;
    }
    std::string bytes(kFileId);
    appendNumber(bytes, kVersion);
    bytes += toIdText(classId);
    appendNumber(bytes, static_cast<std::int64_t>(kHeaderSize + chunks.size()));
    bytes += chunks;
    bytes += kListId;
    appendNumber(bytes, static_cast<std::int32_t>(entries.size() / kEntrySize));
    return bytes + entries;
}

} // namespace tsm
