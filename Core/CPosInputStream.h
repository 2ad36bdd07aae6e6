#pragma once

#include "Core/CInputStream.h"
#include "Core/CPosStream.h"

namespace tsm {

/// Input that knows its position. The bases are shared: a file reader gets the position from its
/// file base and the reading from here.
class CPosInputStream : public virtual CInputStream, public virtual CPosStream {};

} // namespace tsm
