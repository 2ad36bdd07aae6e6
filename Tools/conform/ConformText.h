#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"

#include <string>
#include <string_view>

namespace tsm {

/// Values as a report shows them. [any]

/// "kResultFalse (1)"
[[nodiscard]] std::string resultText(Steinberg::tresult result);
/// The shortest digits that give the number back; "nan" and "inf" for those.
[[nodiscard]] std::string numberText(double value);
/// In double quotes, what can't be shown as "?".
[[nodiscard]] std::string inQuotes(std::string_view text);
/// A text of the interface, of which at most 128 units are looked at.
[[nodiscard]] std::string inQuotes(const Steinberg::Vst::TChar* text);

} // namespace tsm
