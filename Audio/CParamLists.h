#pragma once

#include "Audio/CAudioParam.h"
#include "Core/COwnedArray.h"

namespace tsm {

/// The elements of a parameter's group 0 as whole lists. Reading is for those who hold the
/// parameter's lock; each writing is one change that leaves no other elements behind. [any]

/// The numbers as integers; numbers that no element holds are the fallback's.
void readParamNumbers(const CAudioParam& param, CArray<int>& numbers);
void readParamTexts(const CAudioParam& param, COwnedArray<CString>& texts);
void writeParamNumbers(CAudioParam& param, const CArray<int>& numbers, const void* source,
                       CAudioParamContext* context);
void writeParamTexts(CAudioParam& param, const COwnedArray<CString>& texts, const void* source,
                     CAudioParamContext* context);

} // namespace tsm
