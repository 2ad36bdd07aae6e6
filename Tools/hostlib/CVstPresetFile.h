#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"
#include "Core/CError.h"

#include <optional>
#include <string>
#include <string_view>

namespace tsm {

/// The content of a `.vstpreset` file: 48 bytes of header with the class, chunks, and a list of
/// them at the end.
struct CVstPresetFile {
    Steinberg::TUID classId = {};
    std::string componentState;
    std::optional<std::string> controllerState;

    /// Errors: no preset file, another version, a list or chunk that lies beyond the file, no
    /// component's state. `file` changes only on success.
    [[nodiscard]] static CError* parse(std::string_view bytes, CVstPresetFile& file);
    [[nodiscard]] std::string toBytes() const;
};

} // namespace tsm
