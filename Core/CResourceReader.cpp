#include "Core/CResourceReader.h"

#include "Core/CFileReader.h"
#include "Core/CMemoryReaderStatic.h"
#include "Core/CResourceMap.h"

#include <cassert>

namespace tsm {

CError* CResourceReader::open(const CString& name)
{
    held.reset();
    if (const CResourceMap::CResource* resource = CResourceMap::get().find(name)) {
        held.reset(new CMemoryReaderStatic(resource->data, resource->size));
        return nullptr;
    }
    auto* file = new CFileReader;
    // Held even if it doesn't open: what is asked of it then fails with the file's messages.
    held.reset(file);
    TSM_TRY(file->open(name));
    return nullptr;
}

const void* CResourceReader::getMemoryPtr() const noexcept
{
    assert(held);
    return held->getMemoryPtr();
}

CError* CResourceReader::skip(int count)
{
    assert(held);
    TSM_TRY(held->skip(count));
    return nullptr;
}

CError* CResourceReader::read(void* buffer, int count)
{
    assert(held);
    TSM_TRY(held->read(buffer, count));
    return nullptr;
}

CError* CResourceReader::readStreamed(void* buffer, int& count)
{
    assert(held);
    TSM_TRY(held->readStreamed(buffer, count));
    return nullptr;
}

CError* CResourceReader::getPosition(std::uint64_t& position)
{
    assert(held);
    TSM_TRY(held->getPosition(position));
    return nullptr;
}

CError* CResourceReader::getSize(std::uint64_t& size)
{
    assert(held);
    TSM_TRY(held->getSize(size));
    return nullptr;
}

CError* CResourceReader::setPosition(std::uint64_t position)
{
    assert(held);
    TSM_TRY(held->setPosition(position));
    return nullptr;
}

} // namespace tsm
