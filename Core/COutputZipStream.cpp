#include "Core/COutputZipStream.h"

#include "Core/CText.h"

#include <cassert>
#include <utility>
#include <zlib.h>

namespace tsm {

COutputZipStream::~COutputZipStream()
{
    handleError(close());
}

CError* COutputZipStream::open(COutputStream& to, int level)
{
    TSM_TRY(close());
    resetState();
    if (const int code = deflateInit(zip, level); code != Z_OK)
        TSM_FAIL("@tsmstr_COutputZipStream_open_deflateInit zlib deflateInit error %1 (%2).",
                 toString(code), zlibMessage());
    zip->next_out = zipBuffer;
    zip->avail_out = kBufferSize;
    target = &to;
    return nullptr;
}

CError* COutputZipStream::close()
{
    COutputStream* to = std::exchange(target, nullptr);
    if (!to)
        return nullptr;
    CError* error = finish(*to);
    // Freed in any case; on a stream that didn't finish zlib calls that an error of its own.
    const int code = deflateEnd(zip);
    TSM_TRY(error);
    if (code != Z_OK)
        TSM_FAIL("@tsmstr_COutputZipStream_close_deflateEnd zlib deflateEnd error %1 (%2).",
                 toString(code), zlibMessage());
    return nullptr;
}

CError* COutputZipStream::write(const void* buffer, int count)
{
    assert(count >= 0);
    if (!target)
        TSM_FAIL("@tsmstr_COutputZipStream_write_NoStream Output stream not specified.");
    // zlib only reads from there; its type says otherwise for the sake of old compilers.
    zip->next_in = static_cast<Bytef*>(const_cast<void*>(buffer));
    zip->avail_in = static_cast<uInt>(count);
    while (zip->avail_in > 0) {
        if (const int code = deflate(zip, Z_NO_FLUSH); code != Z_OK)
            TSM_FAIL("@tsmstr_COutputZipStream_write_deflate zlib deflate error %1 (%2).",
                     toString(code), zlibMessage());
        if (zip->avail_out == 0)
            TSM_TRY(flushBuffer(*target));
    }
    return nullptr;
}

CError* COutputZipStream::finish(COutputStream& to)
{
    zip->avail_in = 0; // a failed write may have left some of its input
    int code = Z_OK;
    while (code != Z_STREAM_END) {
        code = deflate(zip, Z_FINISH);
        if (code != Z_OK && code != Z_STREAM_END)
            TSM_FAIL("@tsmstr_COutputZipStream_close_deflate zlib deflate error %1 (%2).",
                     toString(code), zlibMessage());
        TSM_TRY(flushBuffer(to));
    }
    return nullptr;
}

CError* COutputZipStream::flushBuffer(COutputStream& to)
{
    const int count = kBufferSize - static_cast<int>(zip->avail_out);
    zip->next_out = zipBuffer;
    zip->avail_out = kBufferSize;
    TSM_TRY(to.write(zipBuffer, count));
    return nullptr;
}

} // namespace tsm
