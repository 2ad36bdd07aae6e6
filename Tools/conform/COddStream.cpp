#include "Tools/conform/COddStream.h"

#include <algorithm>

namespace tsm {

using namespace Steinberg;

tresult COddStream::read(void* buffer, int32 numBytes, int32* numBytesRead)
{
    const int32 count = std::min(numBytes, step);
    return isBeyond(count, numBytesRead) ? kInternalError
                                         : CMemoryStream::read(buffer, count, numBytesRead);
}

tresult COddStream::write(void* buffer, int32 numBytes, int32* numBytesWritten)
{
    const int32 count = std::min(numBytes, step);
    return isBeyond(count, numBytesWritten) ? kInternalError
                                            : CMemoryStream::write(buffer, count, numBytesWritten);
}

bool COddStream::isBeyond(int32 count, int32* moved)
{
    int64 place = 0;
    tell(&place);
    if (place + count <= end)
        return false;
    isFailed = true;
    if (moved)
        *moved = 0;
    return true;
}

} // namespace tsm
