#include "Platform/CFloatControl.h"

#include <gtest/gtest.h>

#include <limits>

#include <xmmintrin.h>

namespace tsm {

namespace {

// Volatile operands: the products have to be made at run time.
double halfOfSmallestNormal()
{
    volatile double smallest = std::numeric_limits<double>::min();
    volatile double half = smallest * 0.5;
    return half;
}

double scaledDenormal()
{
    volatile double denormal = std::numeric_limits<double>::denorm_min();
    volatile double scaled = denormal * 0x1p200;
    return scaled;
}

TEST(AFloatControlScope, FlushesResultsAndOperands)
{
    ASSERT_GT(halfOfSmallestNormal(), 0.0);
    ASSERT_GT(scaledDenormal(), 0.0);
    {
        CFloatControl scope;
        EXPECT_EQ(halfOfSmallestNormal(), 0.0);
        EXPECT_EQ(scaledDenormal(), 0.0);
        {
            CFloatControl inner;
        }
        EXPECT_EQ(halfOfSmallestNormal(), 0.0);
    }
    EXPECT_GT(halfOfSmallestNormal(), 0.0);
    EXPECT_GT(scaledDenormal(), 0.0);
}

TEST(AFloatControlScope, GivesTheCallersWordBack)
{
    const unsigned original = _mm_getcsr();
    // Rounding towards zero and one of the two flush bits, as an odd host might have them.
    for (const unsigned callers : {original | 0x6000u, original | 0x8000u, original | 0x8040u}) {
        SCOPED_TRACE(callers);
        _mm_setcsr(callers);
        {
            CFloatControl scope;
            const unsigned inside = _mm_getcsr();
            EXPECT_EQ(inside & 0x8040u, 0x8040u);
            EXPECT_EQ(inside & 0x6000u, callers & 0x6000u);
        }
        EXPECT_EQ(_mm_getcsr(), callers);
        _mm_setcsr(original);
    }
}

} // namespace

} // namespace tsm
