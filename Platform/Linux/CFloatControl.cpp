#include "Platform/CFloatControl.h"

#include <xmmintrin.h>

namespace tsm {

namespace {

// Bits of MXCSR: flush results to zero (15), take denormal operands as zero (6).
constexpr std::uint32_t kFlushBits = 0x8040;

} // namespace

CFloatControl::CFloatControl() noexcept
    : saved(_mm_getcsr()), isChanged((saved & kFlushBits) != kFlushBits)
{
    if (isChanged)
        _mm_setcsr(saved | kFlushBits);
}

CFloatControl::~CFloatControl()
{
    if (isChanged)
        _mm_setcsr(saved);
}

} // namespace tsm
