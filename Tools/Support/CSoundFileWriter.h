#pragma once

#include "Tools/Support/CSoundFileReader.h"
#include "Tools/Support/CTemporaryFile.h"
#include "Tools/Support/ESampleFormat.h"

#include <vector>

namespace tsm {

/// Writes a WAV file that appears whole or not at all.
class CSoundFileWriter {
public:
    /// Begins a file. With more than 4 GiB of samples (`frameCount`) it takes the RF64 form.
    /// Errors: the name stands for something else than a file, the folder can't be written.
    [[nodiscard]] CError* create(const std::string& path, int rate, int channelCount,
                                 std::int64_t frameCount, ESampleFormat format);
    /// Appends interleaved frames. Whole-number formats are rounded half away from zero; what lies
    /// beyond full scale is clipped and counted. Errors: the disk.
    [[nodiscard]] CError* write(const double* frames, int frameCount);
    /// Ends the file and gives it its name. Errors: the disk.
    [[nodiscard]] CError* commit();

    /// Samples that were clipped.
    [[nodiscard]] std::int64_t getClippedCount() const noexcept { return clippedCount; }

private:
    void quantize(const double* samples, std::size_t count);

    CTemporaryFile target;
    CSoundFileHandle file; // closes before its target goes
    int channels = 0;
    int integerBits = 0;
    std::vector<int> quantized;
    std::int64_t clippedCount = 0;
};

} // namespace tsm
