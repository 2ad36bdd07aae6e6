#include "rsk/CDSPHBDownsampler.h"

#include <cassert>
#include <cstring>

namespace tsm::rsk {

CDSPHBDownsampler::CDSPHBDownsampler(double bandEdge, double attenuationDb, int maxInLen)
    : filter(bandEdge, attenuationDb, 0.5)
{
    line.allocate(4 * filter.pairCount + maxInLen);
    even.allocate(line.getCount() / 2 + kKernelPad);
    odd.allocate(line.getCount() / 2 + kKernelPad);
    out.allocate(getMaxOutLen(maxInLen) + kKernelPad);
    clear();
}

int CDSPHBDownsampler::getMaxOutLen(int maxInLen) const
{
    return maxInLen / 2 + 1;
}

void CDSPHBDownsampler::clear()
{
    line.clear();
    filled = 2 * filter.pairCount;
}

int CDSPHBDownsampler::process(const double* input, int length, const double*& output)
{
    assert(filled + length <= line.getCount());
    const int pairs = filter.pairCount;
    std::memcpy(line.data() + filled, input, static_cast<std::size_t>(length) * sizeof(double));
    filled += length;
    output = out.data();
    const int count = (filled - 4 * pairs) / 2 + 1;
    if (filled < 4 * pairs)
        return 0;
    for (int i = 0; i < filled / 2; ++i) {
        even[i] = line[2 * i];
        odd[i] = line[2 * i + 1];
    }
    kernels.downsampleHalfBand(even.data() + pairs, odd.data() + pairs, out.data(), count,
                               filter.taps, pairs);
    filled -= 2 * count;
    std::memmove(line.data(), line.data() + 2 * count,
                 static_cast<std::size_t>(filled) * sizeof(double));
    return count;
}

} // namespace tsm::rsk
