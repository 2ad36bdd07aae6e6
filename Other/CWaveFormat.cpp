#include "Other/CWaveFormat.h"

#include "Core/CText.h"

namespace tsm {

CError* CWaveFormat::check() const
{
    TSM_TRY(isFloat ? checkFloat() : checkInteger());
    return nullptr;
}

CError* CWaveFormat::checkInteger() const
{
    if (physicalBits != 8 && physicalBits != 16 && physicalBits != 24 && physicalBits != 32)
        TSM_FAIL("@tsmstr_CWaveFile_checkFormat_BitDepthError "
                 "Unsupported physical bit depth '%1'.",
                 toString(physicalBits));
    if (realBits < 1 || realBits > physicalBits)
        TSM_FAIL("@tsmstr_CWaveFile_checkFormat_RealBitDepthError "
                 "Unsupported real bit depth '%1' (physical '%2').",
                 toString(realBits), toString(physicalBits));
    return nullptr;
}

CError* CWaveFormat::checkFloat() const
{
    if (realBits != 32 && realBits != 64)
        TSM_FAIL("@tsmstr_CWaveFile_checkFormat_BitDepthIEEEError "
                 "Unsupported IEEE floating point bit depth '%1'.",
                 toString(realBits));
    if (realBits != physicalBits)
        TSM_FAIL("@tsmstr_CWaveFile_checkFormat_BitDepthMismatch "
                 "Real bit depth '%1' is not equal to physical bit depth '%2'.",
                 toString(realBits), toString(physicalBits));
    return nullptr;
}

} // namespace tsm
