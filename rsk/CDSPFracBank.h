#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/CDSPDesignCache.h"
#include "rsk/CStdClassAllocator.h"

namespace tsm::rsk {

/// Taps that read a signal between its samples, one row for each of a number of evenly spaced
/// fractions: a sinc under a power of Kaiser's window. The signal's band ends at a quarter of its
/// rate; its images, from three quarters on, are attenuated.
class CDSPFracBank : public CStdClassAllocator {
public:
    struct CKey {
        int fractionCount;
        double attenuationDb;
        bool isSpline; // rows hold triplets to reach all positions between two fractions

        bool operator==(const CKey&) const = default;
    };

    explicit CDSPFracBank(const CKey& design);

    /// Taps of a row; the position stands between those at count / 2 - 1 and count / 2.
    [[nodiscard]] int getTapCount() const noexcept { return tapCount; }
    /// Doubles of a row's tap list, the rest of them zero. Of a spline's row there are three lists:
    /// a tap at `t` (0.0 to 1.0) behind the fraction is c0 + t * c1 + t^2 * c2.
    [[nodiscard]] int getStride() const noexcept { return stride; }
    [[nodiscard]] const double* getRows() const noexcept { return rows.data(); }

    const CKey key;

private:
    void makeTaps(double fraction, double* taps) const;
    void makeSpline();

    double alpha;
    double power;
    int tapCount;
    int stride;
    CAlignedArray<double> rows;
};

/// The banks of the whole process. [any]
using CDSPFracBankCache = CDSPDesignCache<CDSPFracBank, 12>;
[[nodiscard]] CDSPFracBankCache& fracBankCache();

} // namespace tsm::rsk
