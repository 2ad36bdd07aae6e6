#pragma once

#include "Audio/CAudioParamStorage.h"
#include "Core/CByteBuffer.h"

namespace tsm {

/// The bytes of one parameter in a preset: the name of its definition, then the saved values. [any]

/// Writes an item from values; a group above -1 is written alone. Errors: none but for more data
/// than memory streams take.
[[nodiscard]] CError* writePresetItem(const CString& definition, const CAudioParamStorage& values,
                                      std::int32_t group, CByteBuffer& bytes);

/// Reads an item without its definition: `values` takes the shape that the bytes tell. Errors: an
/// unknown shape, damaged or cut data, bytes behind the values.
[[nodiscard]] CError* readPresetItem(const CByteBuffer& bytes, CString& definition,
                                     CAudioParamStorage& values);

} // namespace tsm
