#pragma once

#include <cstdint>

namespace tsm {

/// What the values of a parameter are.
enum class EAudioParamType : std::int32_t { Number, String, Raw };

/// The shape that a parameter's values, changes and undo images share; those of different shapes
/// don't go together.
struct CAudioParamShape {
    std::int32_t elementSize = 1; // numbers per element
    EAudioParamType dataType = EAudioParamType::Number;
    bool isSingleGroup = false;   // every group is group 0
    bool isSingleElement = false; // every element is element 0

    bool operator==(const CAudioParamShape&) const = default;
};

/// In place of a group: the change or question concerns all groups.
inline constexpr std::int32_t kAllParamGroups = 9999;
/// Groups fit the 32 bits of a subscriber's mask.
inline constexpr std::int32_t kMaxParamGroups = 32;
inline constexpr std::int32_t kMaxParamElements = 65536;
/// As many sub-values as there are converter attributes.
inline constexpr std::int32_t kMaxParamElementSize = 4;

} // namespace tsm
