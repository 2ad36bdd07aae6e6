#include "Core/CPosStream.h"

#include <limits>

namespace tsm {
namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();

} // namespace

CError* CPosStream::getPositionInt32(std::int32_t& position)
{
    std::uint64_t wide = 0;
    TSM_TRY(getPosition(wide));
    if (wide > kLargest)
        TSM_FAIL("@tsmstr_CPosStream_getPositionInt32_Greater2GB "
                 "The size of the stream is above allowed 2 GB.");
    position = static_cast<std::int32_t>(wide);
    return nullptr;
}

CError* CPosStream::getSizeInt(std::int32_t& size)
{
    std::uint64_t wide = 0;
    TSM_TRY(getSize(wide));
    if (wide > kLargest)
        TSM_FAIL("@tsmstr_CPosStream_getSizeInt_Greater2GB "
                 "The size of the stream is above allowed 2 GB.");
    size = static_cast<std::int32_t>(wide);
    return nullptr;
}

} // namespace tsm
