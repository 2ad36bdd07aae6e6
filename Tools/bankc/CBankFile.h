#pragma once

#include "Audio/CAudioPresetBank.h"

#include <filesystem>

namespace tsm {

/// What a file of presets is.
enum class EBankKind {
    Bank,  ///< a bank, with a name
    List,  ///< a list of the application data, without one
    Preset ///< one preset, as in an instance's saved state; only read
};

/// Presets and the kind of file they stand in; for one preset a bank of one.
struct CBankContent {
    EBankKind kind = EBankKind::Bank;
    CAudioPresetBank bank;
};

/// Compressed blocks of presets as files.
class CBankFile {
public:
    /// Errors: a file that can't be read, another kind of block, damaged or further data.
    [[nodiscard]] static CError* read(const std::filesystem::path& path, CBankContent& content);
    /// Writes a bank or list as a whole or not at all. Errors: the file can't be written.
    [[nodiscard]] static CError* write(const std::filesystem::path& path,
                                       const CBankContent& content);
};

} // namespace tsm
