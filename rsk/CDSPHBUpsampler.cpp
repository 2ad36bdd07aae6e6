#include "rsk/CDSPHBUpsampler.h"

#include <cassert>
#include <cstring>

namespace tsm::rsk {

CDSPHBUpsampler::CDSPHBUpsampler(double bandEdge, double attenuationDb, int maxInLen)
    : filter(bandEdge, attenuationDb, 1.0)
{
    line.allocate(2 * filter.pairCount + maxInLen + kKernelPad);
    out.allocate(getMaxOutLen(maxInLen) + 2 * kKernelPad);
    clear();
}

int CDSPHBUpsampler::getMaxOutLen(int maxInLen) const
{
    return 2 * maxInLen;
}

void CDSPHBUpsampler::clear()
{
    line.clear();
    filled = filter.pairCount - 1;
}

int CDSPHBUpsampler::process(const double* input, int length, const double*& output)
{
    assert(filled + length + kKernelPad <= line.getCount());
    const int kept = 2 * filter.pairCount - 1;
    std::memcpy(line.data() + filled, input, static_cast<std::size_t>(length) * sizeof(double));
    filled += length;
    output = out.data();
    const int count = filled - kept;
    if (count <= 0)
        return 0;
    kernels.upsampleHalfBand(line.data() + filter.pairCount - 1, out.data(), count, filter.taps,
                             filter.pairCount);
    std::memmove(line.data(), line.data() + count, static_cast<std::size_t>(kept) * sizeof(double));
    filled = kept;
    return 2 * count;
}

} // namespace tsm::rsk
