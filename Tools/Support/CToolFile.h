#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tsm {

/// Whole files, for the tools that the build runs: these stand on no library of ours, so that the
/// build can run them first. The others have CWholeFile.h.
class CToolFile {
public:
    /// False, with a text for the user in `error`, when the file cannot be read.
    static bool read(const std::filesystem::path& path, std::string& content, std::string& error);

    /// Writes beside the target, then renames, so that a failed or interrupted build never leaves
    /// half a file for the next one to take as up to date. False with `error` as above.
    static bool write(const std::filesystem::path& path, std::string_view content,
                      std::string& error);
};

} // namespace tsm
