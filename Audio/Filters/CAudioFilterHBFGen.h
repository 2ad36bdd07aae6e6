#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tsm {

/// Hands on the coefficients of a half-band filter made of two chains of allpass sections
/// (`CDCDAWFilterWorkspace` runs it), which stand in the attributes `a` and `b`.
class CAudioFilterHBFGen : public CAudioFilterGen {
public:
    void generate(const CAudioFilterParams& params, double sampleRate,
                  COwnedArray<CAudioFilter>& filters) const override;
    /// Errors: an empty list, lists of unequal length or with more than 8 numbers, no number.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

private:
    [[nodiscard]] CError* readCoefficients(const char* attrName, CArray<double>& coefficients);

    CArray<double> branches;
};

} // namespace tsm
