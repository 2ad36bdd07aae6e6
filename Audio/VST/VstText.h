#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"

#include <cstddef>
#include <string_view>

namespace Steinberg {

/// Texts of the interface: fixed fields that must end with 0. [any]

/// Copies as much of `text` as the field holds, and fills the rest with 0: hosts compare whole
/// structures.
template <class Unit, std::size_t size>
void copyText(std::basic_string_view<Unit> text, Unit (&field)[size])
{
    for (std::size_t i = 0; i < size; ++i)
        field[i] = i < text.size() && i < size - 1 ? text[i] : Unit{};
}

/// The text of a field, which ends with 0 or with the field.
template <class Unit, std::size_t size>
[[nodiscard]] std::basic_string_view<Unit> fieldText(const Unit (&field)[size])
{
    const std::basic_string_view<Unit> whole(field, size);
    return whole.substr(0, whole.find(Unit{}));
}

/// As copyText() to a String128 that is a parameter; only what is needed is written.
void copyString128(std::u16string_view text, Vst::TChar* string);

/// A zero-terminated text, of which at most `limit` units are looked at; null is empty.
[[nodiscard]] std::u16string_view viewOf(const Vst::TChar* text, std::size_t limit = 65536);

} // namespace Steinberg
