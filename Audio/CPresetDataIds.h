#pragma once

#include "Core/CDataId.h"

namespace tsm {

/// The types of blocks that hold presets.
inline constexpr std::uint32_t kPresetDataId = dataId("aprs");     ///< one preset
inline constexpr std::uint32_t kPresetBankDataId = dataId("abnk"); ///< a bank
inline constexpr std::uint32_t kPresetListDataId = dataId("alst"); ///< a stored list

} // namespace tsm
