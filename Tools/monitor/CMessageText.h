#pragma once

#include "Core/CInputStream.h"

#include <string>

namespace tsm {

/// A message of the parameter interface in words: its name and its fields, as far as they are
/// plain (Docs/interface.md has the list); what follows is told by its size alone. A damaged
/// message ends in "(damaged)".
[[nodiscard]] std::string messageText(const void* bytes, int count);

} // namespace tsm
