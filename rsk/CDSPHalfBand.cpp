#include "rsk/CDSPHalfBand.h"

#include "rsk/CDSPKaiserWindow.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tsm::rsk {

CDSPHalfBand::CDSPHalfBand(double bandEdge, double attenuationDb, double gain)
{
    // Kaiser's formulas are fits for long filters; a short one falls short by some decibels.
    const double attenuation = attenuationDb + 7.0;
    const double width = 2.0 * std::numbers::pi * (0.5 - 2.0 * bandEdge);
    const double span = CDSPKaiserWindow::spanFor(attenuation, width);
    // From the first to the last tap that isn't zero there are 4 * pairs - 2 steps.
    pairCount = std::clamp(static_cast<int>(std::ceil((span + 2.0) / 4.0)), 1, kMaxPairs);

    const CDSPKaiserWindow window(CDSPKaiserWindow::alphaFor(attenuation));
    double sum = 0.0;
    for (int i = 0; i < pairCount; ++i) {
        const double offset = 2 * i + 1;
        taps[i] = (i % 2 == 0 ? 1.0 : -1.0) / offset * window.at(offset / (2 * pairCount - 1));
        sum += 2.0 * taps[i];
    }
    for (int i = 0; i < pairCount; ++i)
        taps[i] *= gain / sum;
}

} // namespace tsm::rsk
