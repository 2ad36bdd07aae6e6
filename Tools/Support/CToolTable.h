#pragma once

#include "Core/CString.h"

#include <string>
#include <vector>

namespace tsm {

/// The cells of one line.
using CToolRow = std::vector<CString>;

/// Lays out rows as columns with two blanks between them, one line a row, without blanks at the
/// ends of lines. Widths are counted in characters, as a terminal shows them.
[[nodiscard]] std::string layOutTable(const std::vector<CToolRow>& rows);

} // namespace tsm
