#include "Core/CInputZipStream.h"

#include "Core/CText.h"

#include <cassert>
#include <utility>
#include <zlib.h>

namespace tsm {

CInputZipStream::~CInputZipStream()
{
    handleError(close());
}

CError* CInputZipStream::open(CInputStream& from)
{
    TSM_TRY(close());
    resetState();
    TSM_TRY(refill(from));
    if (const int code = inflateInit(zip); code != Z_OK)
        TSM_FAIL("@tsmstr_CInputZipStream_open_inflateInit zlib inflateInit error %1 (%2).",
                 toString(code), zlibMessage());
    source = &from;
    return nullptr;
}

CError* CInputZipStream::close()
{
    if (!std::exchange(source, nullptr))
        return nullptr;
    if (const int code = inflateEnd(zip); code != Z_OK)
        TSM_FAIL("@tsmstr_CInputZipStream_close_inflateEnd zlib inflateEnd error %1 (%2).",
                 toString(code), zlibMessage());
    return nullptr;
}

CError* CInputZipStream::read(void* buffer, int count)
{
    assert(count >= 0);
    if (!source)
        TSM_FAIL("@tsmstr_CInputZipStream_read_NoStream Input stream not specified.");
    zip->next_out = static_cast<Bytef*>(buffer);
    zip->avail_out = static_cast<uInt>(count);
    int code = Z_OK;
    while (zip->avail_out > 0) {
        // Behind its end the stream gives nothing more, however often it is asked.
        const bool isAtEnd = code == Z_STREAM_END;
        if (zip->avail_in == 0 && !isAtEnd)
            TSM_TRY(refill(*source));
        if (zip->avail_in == 0 || isAtEnd)
            TSM_FAIL("@tsmstr_CInputZipStream_read_EOF Premature end of file.");
        code = inflate(zip, Z_SYNC_FLUSH);
        if (code != Z_OK && code != Z_STREAM_END)
            TSM_FAIL("@tsmstr_CInputZipStream_read_inflate zlib inflate error %1 (%2).",
                     toString(code), zlibMessage());
    }
    return nullptr;
}

CError* CInputZipStream::verifyEnd()
{
    if (!source)
        TSM_FAIL("@tsmstr_CInputZipStream_read_NoStream Input stream not specified.");
    std::uint8_t beyond = 0;
    int code = Z_OK;
    zip->next_out = &beyond;
    zip->avail_out = 1;
    for (;;) {
        code = inflate(zip, Z_SYNC_FLUSH); // an end that was reached before is told again
        const bool isHungry = code == Z_BUF_ERROR || (code == Z_OK && zip->avail_out > 0);
        if (!isHungry)
            break;
        if (zip->avail_in == 0)
            TSM_TRY(refill(*source));
        if (zip->avail_in == 0)
            TSM_FAIL("@tsmstr_CInputZipStream_read_EOF Premature end of file.");
    }
    if (zip->avail_out == 0)
        TSM_FAIL("@tsmstr_CInputZipStream_verifyEnd_More More data than expected.");
    if (code != Z_STREAM_END)
        TSM_FAIL("@tsmstr_CInputZipStream_read_inflate zlib inflate error %1 (%2).", toString(code),
                 zlibMessage());
    return nullptr;
}

CError* CInputZipStream::refill(CInputStream& from)
{
    int count = kBufferSize;
    TSM_TRY(from.readStreamed(zipBuffer, count));
    zip->next_in = zipBuffer;
    zip->avail_in = static_cast<uInt>(count);
    return nullptr;
}

} // namespace tsm
