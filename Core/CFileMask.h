#pragma once

#include "Core/COwnedArray.h"
#include "Core/CString.h"

namespace tsm {

/// True when the whole of `name` matches `mask`, in which "*" stands for any run of characters,
/// also an empty one, and "?" for exactly one. [any]
[[nodiscard]] bool matchesMask(const CString& name, const CString& mask) noexcept;
/// The same for any of several masks.
[[nodiscard]] bool matchesAnyMask(const CString& name, const COwnedArray<CString>& masks) noexcept;

} // namespace tsm
