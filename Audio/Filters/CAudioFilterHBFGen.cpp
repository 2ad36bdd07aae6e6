#include "Audio/Filters/CAudioFilterHBFGen.h"

#include "Audio/Filters/CDCDAWFilterWorkspace.h"
#include "Core/CText.h"

namespace tsm {

CError* CAudioFilterHBFGen::init()
{
    TSM_TRY(CAudioFilterGen::init());
    CArray<double> b;
    branches.clear();
    TSM_TRY(readCoefficients("a", branches));
    TSM_TRY(readCoefficients("b", b));
    if (branches.isEmpty())
        TSM_FAIL("@tsmstr_CAudioFilterHBFGen_init_NoCoeffsA Not enough 'a' coefficients defined.");
    if (b.isEmpty())
        TSM_FAIL("@tsmstr_CAudioFilterHBFGen_init_NoCoeffsB Not enough 'b' coefficients defined.");
    if (branches.getCount() != b.getCount())
        TSM_FAIL("@tsmstr_CAudioFilterHBFGen_init_CoeffsCountError "
                 "Coefficient count should match in 'a' and 'b' coefficient lists.");
    if (b.getCount() > kMaxHalfBandSections)
        TSM_FAIL("@tsmstr_CAudioFilterHBFGen_init_TooManyCoeffs "
                 "More than %1 coefficients in a list.",
                 toString(kMaxHalfBandSections));
    for (const double coefficient : b)
        branches.add(coefficient);
    return nullptr;
}

CError* CAudioFilterHBFGen::readCoefficients(const char* attrName, CArray<double>& coefficients)
{
    const CString& text = getAttrString(attrName);
    if (text.trimmed().isEmpty())
        return nullptr;
    COwnedArray<CString> pieces;
    splitText(text, ',', pieces);
    for (const CString& piece : pieces) {
        double value = 0.0;
        if (!parseDouble(piece.trimmed(), value))
            TSM_FAIL("@tsmstr_CAudioFilterHBFGen_init_InvalidCoeff "
                     "Invalid '%1' coefficient '%2' specified.",
                     attrName, piece.trimmed());
        coefficients.add(value);
    }
    return nullptr;
}

void CAudioFilterHBFGen::generate(const CAudioFilterParams& params, double sampleRate,
                                  COwnedArray<CAudioFilter>& filters) const
{
    static_cast<void>(params);
    static_cast<void>(sampleRate); // half of whatever the band is
    filters.create().branches = branches;
}

void CAudioFilterHBFGen::declareClass(CObjectClassInfo& info)
{
    CAudioFilterGen::declareClass(info);
}

} // namespace tsm
