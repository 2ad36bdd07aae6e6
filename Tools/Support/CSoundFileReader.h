#pragma once

#include "Core/CError.h"

#include <cstdint>
#include <memory>
#include <string>

#include <sndfile.h>

namespace tsm {

/// Ends an open file of the sound file library.
struct CSoundFileCloser {
    void operator()(SNDFILE* file) const noexcept { sf_close(file); }
};
using CSoundFileHandle = std::unique_ptr<SNDFILE, CSoundFileCloser>;

/// Reads a sound file from its beginning to its end, as 64-bit samples with full scale 1.0.
class CSoundFileReader {
public:
    /// Opens the file. Errors: it can't be read, it is no sound file or a damaged one, a RIFF file
    /// that is shorter than its header states, no samples in it.
    [[nodiscard]] CError* open(const std::string& path);
    /// Reads `frameCount` frames, interleaved, of those that are left.
    /// Errors: the file ends or fails before.
    [[nodiscard]] CError* read(double* frames, int frameCount);

    [[nodiscard]] int getRate() const noexcept { return info.samplerate; }
    [[nodiscard]] int getChannelCount() const noexcept { return info.channels; }
    [[nodiscard]] std::int64_t getFrameCount() const noexcept { return info.frames; }

private:
    CString name;
    CSoundFileHandle file;
    SF_INFO info = {};
};

} // namespace tsm
