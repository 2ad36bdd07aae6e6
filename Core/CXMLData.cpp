#include "Core/CXMLData.h"

#include "Core/CByteOrder.h"
#include "Core/CPosInputStream.h"

#include <cstring>

namespace tsm {
namespace {

constexpr std::size_t kHeaderSize = 8;
// Strings may lie in each other, as ends of words do; all in one would take any amount of memory.
constexpr std::size_t kMostSharing = 16;

} // namespace

CXMLData::~CXMLData()
{
    if (ownedNodes)
        freeBlock(ownedNodes);
}

void CXMLData::release() noexcept
{
    if (--references == 0)
        delete this;
}

CError* CXMLData::load(CXMLData*& data, CPosInputStream& stream)
{
    data = nullptr;
    std::int32_t position = 0;
    std::int32_t size = 0;
    TSM_TRY(stream.getPositionInt32(position));
    TSM_TRY(stream.getSizeInt(size));
    const auto rest = static_cast<std::size_t>(size < position ? 0 : size - position);

    CXMLData* made = new CXMLData;
    const void* direct = stream.getMemoryPtr();
    CError* error = direct ? made->loadInPlace(static_cast<const std::uint8_t*>(direct), rest)
                           : made->loadCopy(stream, rest);
    if (error) {
        made->release();
        return error;
    }
    data = made;
    return nullptr;
}

CError* CXMLData::loadInPlace(const std::uint8_t* data, std::size_t size)
{
    if (size < kHeaderSize)
        TSM_FAIL("@tsmstr_CXMLData_load_Header The document is cut short in its header.");
    const std::uint32_t count = readU32(data);
    const std::uint32_t tableSize = readU32(data + 4);
    if (tableSize > size - kHeaderSize)
        TSM_FAIL("@tsmstr_CXMLData_load_Table The document is cut short in its strings.");
    TSM_TRY(decodeStrings(data + kHeaderSize, count, tableSize));
    nodes = data + kHeaderSize + tableSize;
    nodesEnd = data + size;
    isInPlace = true;
    return nullptr;
}

CError* CXMLData::loadCopy(CPosInputStream& stream, std::size_t size)
{
    // The file is as large as it says, so its size bounds the memory that is taken.
    auto* whole = static_cast<std::uint8_t*>(allocBlock(size));
    ownedNodes = whole;
    TSM_TRY(stream.read(whole, static_cast<int>(size)));
    TSM_TRY(loadInPlace(whole, size));
    isInPlace = false;
    return nullptr;
}

CError* CXMLData::decodeStrings(const std::uint8_t* table, std::uint32_t count,
                                std::uint32_t tableSize)
{
    // An index of a node is 16 bits wide, and the first string is the empty one.
    if (count == 0 || count > 0x10000 || count > tableSize / 4)
        TSM_FAIL("@tsmstr_CXMLData_load_Count The document has a wrong count of strings.");
    if (tableSize > count * 4 && table[tableSize - 1] != 0)
        TSM_FAIL("@tsmstr_CXMLData_load_End The document's last string has no end.");
    std::size_t total = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t offset = readU32(table + std::size_t{4} * i);
        if (offset < count * 4 || offset >= tableSize)
            TSM_FAIL("@tsmstr_CXMLData_load_Offset The document has a wrong place of a string.");
        const char* text = reinterpret_cast<const char*>(table + offset);
        const std::size_t length = strnlen(text, tableSize - offset);
        total += length;
        if (total > kMostSharing * tableSize)
            TSM_FAIL("@tsmstr_CXMLData_load_Sharing The document's strings share too many bytes.");
        strings.add(new CString(CString::fromUtf8(text, static_cast<std::int64_t>(length))));
    }
    if (!strings[0].isEmpty())
        TSM_FAIL("@tsmstr_CXMLData_load_First The document's first string is not empty.");
    return nullptr;
}

} // namespace tsm
