#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"
#include "Core/CString.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tsm {

/// Between the interface's texts and ours. [any]

/// A zero-terminated UTF-16 text, of which a String128's length is looked at: plug-ins may forget
/// the end. Null is empty.
[[nodiscard]] CString fromVstText(const Steinberg::Vst::TChar* text);
[[nodiscard]] std::u16string toVstText(const CString& text);
/// A field of 8-bit text, in UTF-8, which may fill the field without an end.
[[nodiscard]] CString fromVstField(std::string_view field);
template <std::size_t size>
[[nodiscard]] CString fromVstField(const Steinberg::char8 (&field)[size])
{
    return fromVstField(std::string_view(field, size));
}

/// The 32 digits of an identifier, in the order of its bytes.
[[nodiscard]] std::string toIdText(const Steinberg::TUID id);
/// False when these are no 32 hexadecimal digits.
[[nodiscard]] bool parseIdText(std::string_view digits, Steinberg::TUID id);

} // namespace tsm
