#pragma once

#include "Core/CString.h"

namespace tsm {

/// One "NAME=TEXT" of the command line.
struct CNamedText {
    CString name;
    CString text;
};

} // namespace tsm
