#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tsm {

/// What the analysis wants from the report that reelpath-render writes.
struct CReportFile {
    std::optional<double> latency;       // frames
    std::optional<double> timesRealTime; // seconds of sound a second of work

    /// Reads the report beside a sound file: the same name with the extension "json". Members that
    /// are missing or no numbers stay unset, and so do all without the file. False, with a text for
    /// the user in `error`, when the file is no JSON object.
    [[nodiscard]] static bool readBeside(const std::filesystem::path& soundPath,
                                         CReportFile& report, std::string& error);
};

} // namespace tsm
