#pragma once

#include "Core/COwnedArray.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

/// Numbers and lists in texts, and letters. Independent of the process's locale. [any]

/// The decimal form.
[[nodiscard]] CString toString(std::int64_t value);
[[nodiscard]] CString toString(int value);
[[nodiscard]] CString toString(std::uint32_t value);
/// The number rounded half away from zero to `decimals` decimals (0 to 17), with at least one digit
/// before the point. The sign is that of the rounded digits: -0.04 with one decimal is "0.0".
[[nodiscard]] CString toFixed(double value, int decimals);

/// Reads an integer at the beginning of `text`: an optional sign, then decimal digits, hexadecimal
/// ones behind "0x" or octal ones behind "0"; what follows is ignored ("1.0" reads 1). Returns
/// false, and 0, when there is no digit or the number doesn't fit 32 bits.
[[nodiscard]] bool parseInt(const CString& text, std::int32_t& out) noexcept;
/// As parseInt(), but the whole of `text` must be the number.
[[nodiscard]] bool parseWholeInt(const CString& text, std::int32_t& out) noexcept;
/// Reads a whole text as a number: an optional sign, digits with a "." or "," as the decimal
/// separator, an exponent behind at least one digit. Returns false, and 0.0, for anything else and
/// for what doesn't fit a finite double.
[[nodiscard]] bool parseDouble(const CString& text, double& out) noexcept;

/// Cuts `text` at each `separator`; empty pieces are kept, an empty text gives one empty piece.
void splitText(const CString& text, std::uint16_t separator, COwnedArray<CString>& pieces);
/// Cuts `text` at blanks, tabs and line ends; there are no empty pieces.
void splitWords(const CString& text, COwnedArray<CString>& words);

/// The text with Latin-1's capital letters made small.
[[nodiscard]] CString toLowerCase(const CString& text);

} // namespace tsm
