#pragma once

#include "Core/CError.h"
#include "Tools/Support/CNamedText.h"
#include "Tools/Support/ESampleFormat.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tsm {

/// What the command lines of all tools say that send a sound file through blocks.
struct CSoundOptions {
    static constexpr int kMaxBlock = 65536;

    std::string inPath;
    std::string outPath;
    std::vector<CNamedText> settings;    // parameters, in the order given
    std::vector<CNamedText> automations; // the text holds the points
    int blockSize = 512;
    ESampleFormat format = ESampleFormat::Float32;
    bool useFloatHost = false; // 32-bit host samples
    bool isRaw = false;
    bool isOffline = false;
    bool isJson = false;

    /// Enters the options in `app`, which fills this object while it parses. The two texts tell in
    /// the help how parameters are named.
    void describe(CLI::App& app, const char* setHelp, const char* automateHelp);
    /// Looks into what was parsed. Errors: an assignment that is none.
    [[nodiscard]] CError* finish();
    /// Errors: a missing file's name.
    [[nodiscard]] CError* checkFiles() const;

private:
    std::vector<std::string> rawSettings;
    std::vector<std::string> rawAutomations;
    std::string formatName = "f32";
};

} // namespace tsm
