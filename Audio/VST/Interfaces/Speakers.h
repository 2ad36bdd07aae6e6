#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"

#include <bit>

namespace Steinberg::Vst {

namespace SpeakerArr {

constexpr SpeakerArrangement kEmpty = 0;
constexpr SpeakerArrangement kStereo = 0x3;
constexpr SpeakerArrangement kMono = 0x80000;

/// The count of set bits.
[[nodiscard]] constexpr int32 getChannelCount(SpeakerArrangement arrangement) noexcept
{
    return std::popcount(arrangement);
}

} // namespace SpeakerArr

/// Class categories of factories.
constexpr FIDString kVstAudioEffectClass = "Audio Module Class";
constexpr FIDString kVstComponentControllerClass = "Component Controller Class";

} // namespace Steinberg::Vst
