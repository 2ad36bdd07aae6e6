#pragma once

#include "Core/CError.h"
#include "Tools/render/ESampleFormat.h"

#include <string>
#include <vector>

namespace tsm {

/// One "NAME=TEXT" of the command line.
struct CNamedText {
    CString name;
    CString text;
};

/// What the command line asks for.
struct CRenderOptions {
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
    bool isList = false;
    bool isJson = false;

    /// Reads the command line. `isDone` is set when a help text was asked for and has been written
    /// to standard output. Errors: unknown options, bad values, missing files' names.
    [[nodiscard]] static CError* parse(int argc, const char* const* argv, CRenderOptions& options,
                                       bool& isDone);
};

} // namespace tsm
