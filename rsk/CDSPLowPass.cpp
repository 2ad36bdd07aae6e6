#include "rsk/CDSPLowPass.h"

#include "rsk/CDSPKaiserWindow.h"
#include "rsk/CDSPRealFFTPool.h"

#include <cmath>
#include <numbers>

namespace tsm::rsk {

namespace {

// Kaiser's formulas are fits, good to a few tenths of a decibel.
constexpr double kMarginDb = 2.0;

int orderFor(int count)
{
    int order = kMinFFTOrder;
    while (1 << order < count)
        ++order;
    return order;
}

} // namespace

CDSPLowPass::CDSPLowPass(const CKey& design) : key(design)
{
    constexpr double kPi = std::numbers::pi;
    const double attenuation = key.attenuationDb + kMarginDb;
    const double transition = key.frequency * key.transitionPct * 0.01;
    const double cutoff = key.frequency - 0.5 * transition;
    halfLength =
        static_cast<int>(std::ceil(0.5 * CDSPKaiserWindow::spanFor(attenuation, kPi * transition)));
    transform = &CDSPRealFFTPool::get(orderFor(4 * halfLength));

    // Center at sample 0: the delay is dealt with by the reader.
    const int count = transform->getCount();
    spectrum.allocate(count);
    const CDSPKaiserWindow window(CDSPKaiserWindow::alphaFor(attenuation));
    double sum = cutoff;
    spectrum[0] = cutoff;
    for (int i = 1; i <= halfLength; ++i) {
        const double tap =
            std::sin(kPi * cutoff * i) / (kPi * i) * window.at(static_cast<double>(i) / halfLength);
        sum += 2.0 * tap;
        spectrum[i] = tap;
        spectrum[count - i] = tap;
    }
    const double scale = key.gain / (sum * count);
    for (int i = 0; i < count; ++i)
        spectrum[i] *= scale;
    CAlignedArray<double> work(transform->getWorkCount());
    transform->forward(spectrum.data(), spectrum.data(), work.data());
}

CDSPLowPassCache& lowPassCache()
{
    static CDSPLowPassCache cache;
    return cache;
}

} // namespace tsm::rsk
