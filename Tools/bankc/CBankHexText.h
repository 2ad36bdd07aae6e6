#pragma once

#include "Core/CByteBuffer.h"

#include <string>
#include <string_view>

namespace tsm {

/// Two hexadecimal digits a byte.
[[nodiscard]] std::string toHexText(const CByteBuffer& bytes);
/// False for anything that toHexText() doesn't write; letters of either case are read.
[[nodiscard]] bool parseHexText(std::string_view text, CByteBuffer& bytes);

} // namespace tsm
