#pragma once

#include "Audio/CAudioPreset.h"
#include "Core/COwnedArray.h"

namespace tsm {

/// Presets in an order, under a name.
struct CAudioPresetBank : CCheckedObject {
    /// Writes name, count and the presets.
    [[nodiscard]] CError* save(COutputStream& stream) const;
    /// Reads what save() wrote, in place of the present content. Errors: those of the presets,
    /// more than kMaxPresets of them; the content is undefined then.
    [[nodiscard]] CError* load(CInputStream& stream);

    /// The same as a stored list: a flag that content follows, then a bank without a name. A flag
    /// of 0 reads as an empty list.
    [[nodiscard]] CError* saveList(COutputStream& stream) const;
    [[nodiscard]] CError* loadList(CInputStream& stream);

    /// Takes deep copies of another bank's presets; the name stays.
    void copyPresets(const CAudioPresetBank& other);

    static constexpr std::uint32_t kMaxPresets = 1u << 16;

    CString name;
    COwnedArray<CAudioPreset> presets;
};

} // namespace tsm
