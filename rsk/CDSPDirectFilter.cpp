#include "rsk/CDSPDirectFilter.h"

#include <cassert>

namespace tsm::rsk {

void CDSPDirectFilter::load(const double* taps, int count, double gain)
{
    assert(count > 0);
    const int lanes = kernels.lanes;
    const int rowCount = count + lanes - 1;
    tapCount = count;
    rows.allocate(rowCount * lanes);
    for (int row = 0; row < rowCount; ++row)
        for (int lane = 0; lane < lanes; ++lane) {
            const int tap = row - (lanes - 1) + lane;
            if (tap >= 0 && tap < count)
                rows[row * lanes + lane] = gain * taps[tap];
        }
}

} // namespace tsm::rsk
