#include "Core/CZipStream.h"

#include "Core/CMemory.h"

#include <zlib.h>

namespace tsm {
namespace {

void* allocForZlib(void*, uInt count, uInt size)
{
    return allocBlock(std::size_t{count} * size);
}

void freeForZlib(void*, void* block)
{
    if (block)
        freeBlock(block);
}

} // namespace

CZipStream::CZipStream()
    : zip(createInBlock<z_stream>()), zipBuffer(static_cast<std::uint8_t*>(allocBlock(kBufferSize)))
{
}

CZipStream::~CZipStream()
{
    freeBlock(zipBuffer);
    destroyInBlock(zip);
}

void CZipStream::resetState() noexcept
{
    *zip = z_stream{};
    zip->zalloc = &allocForZlib;
    zip->zfree = &freeForZlib;
}

CString CZipStream::zlibMessage() const
{
    return CString(zip->msg);
}

} // namespace tsm
