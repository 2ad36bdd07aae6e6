#pragma once

#include "Core/CError.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tsm {

/// Writes a whole file at once, which appears whole or not at all. Errors: its name stands for
/// something else than a file, the folder can't be written, the disk.
[[nodiscard]] CError* writeWholeFile(const std::string& path, std::string_view bytes);
/// Reads a regular file of at most `limit` bytes. Errors: it can't be read, it is longer.
[[nodiscard]] CError* readWholeFile(const std::string& path, std::size_t limit, std::string& bytes);

} // namespace tsm
