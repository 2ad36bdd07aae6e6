#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"
#include "Core/CString.h"

/// Text on its way between the framework and a host: zero-terminated UTF-16.

/// Fills a host's buffer of 128 units; what doesn't fit is cut, never within a character. [any]
void writeText(const tsm::CString& text, Steinberg::Vst::TChar* buffer) noexcept;
/// Takes at most `kMaxTextUnits` units; null reads as the empty text. [any]
[[nodiscard]] tsm::CString readText(const Steinberg::Vst::TChar* text);

/// The room of a host's text, its end included.
inline constexpr int kMaxTextUnits = 128;
