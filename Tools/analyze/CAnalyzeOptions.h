#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tsm {

/// A sound file and what it is called in tables and plots.
struct CLabelledFile {
    std::string label;
    std::filesystem::path path;
};

enum class EAnalyzeMode { Table, Spectrum, Compare };

/// What the command line asks for.
struct CAnalyzeOptions {
    EAnalyzeMode mode = EAnalyzeMode::Table;
    std::vector<CLabelledFile> files;
    std::optional<double> musicSeconds; // the files hold reelpath-music's music of this length
    std::filesystem::path output;       // of the spectrum
    bool isHarmonics = false;           // harmonics of the sine section in place of bands
    long delay = 0;                     // frames, of the comparison

    /// Reads the command line. Empty when it is to be carried out, else the exit status, with the
    /// help or the error already written.
    [[nodiscard]] static std::optional<int> parse(int argc, const char* const* argv,
                                                  CAnalyzeOptions& options);
};

} // namespace tsm
