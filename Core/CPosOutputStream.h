#pragma once

#include "Core/COutputStream.h"
#include "Core/CPosStream.h"

namespace tsm {

/// Output that knows its position; the bases are shared as in `CPosInputStream`.
class CPosOutputStream : public virtual COutputStream, public virtual CPosStream {};

} // namespace tsm
