#pragma once

#include "Core/CString.h"

namespace tsm {

/// The full name that `name` has when it is used at `basePath`: "/a.b" is "a.b" itself; each
/// leading "^" removes the last component of the path; what remains is appended with a dot between,
/// its own if it begins with one. With nothing left behind the "^"s the shortened path is the
/// result. [any]
[[nodiscard]] CString resolveName(const CString& name, const CString& basePath);

} // namespace tsm
