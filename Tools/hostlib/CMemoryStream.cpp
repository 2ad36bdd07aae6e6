#include "Tools/hostlib/CMemoryStream.h"

#include <algorithm>
#include <cstring>

namespace tsm {

using namespace Steinberg;

tresult CMemoryStream::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IBStream>(wanted, obj, this) ||
        giveInterface<ISizeableStream>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

tresult CMemoryStream::read(void* buffer, int32 numBytes, int32* numBytesRead)
{
    if (numBytesRead)
        *numBytesRead = 0;
    if (numBytes < 0 || (numBytes > 0 && !buffer))
        return kInvalidArgument;
    const int64 left = std::max<int64>(static_cast<int64>(bytes.size()) - position, 0);
    const auto count = static_cast<int32>(std::min<int64>(numBytes, left));
    if (count > 0)
        std::memcpy(buffer, bytes.data() + position, static_cast<std::size_t>(count));
    position += count;
    if (numBytesRead)
        *numBytesRead = count;
    return kResultOk;
}

tresult CMemoryStream::write(void* buffer, int32 numBytes, int32* numBytesWritten)
{
    if (numBytesWritten)
        *numBytesWritten = 0;
    if (numBytes < 0 || (numBytes > 0 && !buffer))
        return kInvalidArgument;
    const int64 end = position + numBytes;
    if (end > kMaxSize)
        return kOutOfMemory;
    if (numBytes > 0) {
        bytes.resize(std::max(bytes.size(), static_cast<std::size_t>(end)));
        std::memcpy(bytes.data() + position, buffer, static_cast<std::size_t>(numBytes));
    }
    position = end;
    if (numBytesWritten)
        *numBytesWritten = numBytes;
    return kResultOk;
}

tresult CMemoryStream::seek(int64 pos, int32 mode, int64* result)
{
    int64 base = 0;
    if (mode == kIBSeekCur)
        base = position;
    else if (mode == kIBSeekEnd)
        base = static_cast<int64>(bytes.size());
    else if (mode != kIBSeekSet)
        return kInvalidArgument;
    // The base is at most kMaxSize, so that neither difference wraps.
    if (pos < -base || pos > kMaxSize - base)
        return kInvalidArgument;
    position = base + pos;
    if (result)
        *result = position;
    return kResultOk;
}

tresult CMemoryStream::tell(int64* pos)
{
    if (!pos)
        return kInvalidArgument;
    *pos = position;
    return kResultOk;
}

tresult CMemoryStream::getStreamSize(int64& size)
{
    size = static_cast<int64>(bytes.size());
    return kResultOk;
}

tresult CMemoryStream::setStreamSize(int64 size)
{
    if (size < 0 || size > kMaxSize)
        return kInvalidArgument;
    bytes.resize(static_cast<std::size_t>(size));
    return kResultOk;
}

} // namespace tsm
