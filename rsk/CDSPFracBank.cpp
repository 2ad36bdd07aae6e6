#include "rsk/CDSPFracBank.h"

#include "rsk/CDSPKaiserWindow.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <numbers>

namespace tsm::rsk {

namespace {

/// The tap counts are the least with which the window's images stay below the attenuation.
struct CWindowRow {
    double attenuationDb;
    double alpha;
    double power;
    int tapCount;
};

constexpr CWindowRow kWindowRows[] = {
    {55.5446, 4.424152, 1.800488, 10},   {81.4191, 5.261523, 1.813332, 12},
    {96.3392, 5.943375, 1.873019, 14},   {111.1315, 6.830866, 1.854956, 16},
    {125.4653, 7.664846, 1.856577, 18},  {139.7379, 8.203873, 1.926952, 20},
    {154.0532, 8.786515, 1.977531, 22},  {168.2101, 9.594502, 1.971846, 24},
    {182.1076, 10.516314, 1.950407, 26}, {195.5668, 10.238247, 2.160892, 28},
    {209.061, 10.997606, 2.153653, 30},
};

const CWindowRow& windowRow(double attenuationDb)
{
    for (const CWindowRow& row : kWindowRows)
        if (row.attenuationDb >= attenuationDb)
            return row;
    return *std::prev(std::end(kWindowRows));
}

} // namespace

CDSPFracBank::CDSPFracBank(const CKey& design) : key(design)
{
    const CWindowRow& row = windowRow(key.attenuationDb);
    alpha = row.alpha;
    power = row.power;
    tapCount = row.tapCount;
    stride = (tapCount + 7) / 8 * 8;
    rows.allocate(key.fractionCount * stride * (key.isSpline ? 3 : 1));
    if (key.isSpline) {
        makeSpline();
        return;
    }
    // The window is even: a fraction's taps are those of the opposite fraction, last one first.
    const int count = key.fractionCount;
    for (int i = 0; i < count; ++i) {
        double* taps = rows.data() + i * stride;
        if (2 * i <= count)
            makeTaps(static_cast<double>(i) / count, taps);
        else
            std::reverse_copy(rows.data() + (count - i) * stride,
                              rows.data() + (count - i) * stride + tapCount, taps);
    }
}

void CDSPFracBank::makeTaps(double fraction, double* taps) const
{
    if (fraction == 0.0) {
        taps[tapCount / 2 - 1] = 1.0;
        return;
    }
    const CDSPKaiserWindow window(alpha, power);
    const double sine = std::sin(std::numbers::pi * fraction);
    double sum = 0.0;
    for (int i = 0; i < tapCount; ++i) {
        const int offset = i - (tapCount / 2 - 1);
        const double distance = fraction - offset;
        const double sinc = (offset % 2 == 0 ? sine : -sine) / (std::numbers::pi * distance);
        taps[i] = sinc * window.at(2.0 * distance / tapCount);
        sum += taps[i];
    }
    for (int i = 0; i < tapCount; ++i)
        taps[i] /= sum;
}

void CDSPFracBank::makeSpline()
{
    // The parabola through both ends of the step and its middle; at 256 fractions it is less than
    // 1e-8 off, since the taps' third derivative stays below pi^3.
    CAlignedArray<double> points((2 * key.fractionCount + 1) * stride);
    for (int i = 0; i < 2 * key.fractionCount; ++i)
        makeTaps(0.5 * i / key.fractionCount, points.data() + i * stride);
    std::memcpy(points.data() + 2 * key.fractionCount * stride + 1, points.data(),
                static_cast<std::size_t>(tapCount - 1) * sizeof(double));
    for (int i = 0; i < key.fractionCount; ++i)
        for (int tap = 0; tap < tapCount; ++tap) {
            const double start = points[2 * i * stride + tap];
            const double middle = points[(2 * i + 1) * stride + tap];
            const double end = points[(2 * i + 2) * stride + tap];
            double* triplet = rows.data() + 3 * i * stride + tap;
            triplet[0] = start;
            triplet[stride] = 4.0 * middle - 3.0 * start - end;
            triplet[2 * stride] = 2.0 * (start + end) - 4.0 * middle;
        }
}

CDSPFracBankCache& fracBankCache()
{
    static CDSPFracBankCache cache;
    return cache;
}

} // namespace tsm::rsk
