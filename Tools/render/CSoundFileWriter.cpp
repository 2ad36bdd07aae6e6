#include "Tools/render/CSoundFileWriter.h"

#include "Core/CText.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace tsm {

namespace {

int subtypeOf(ESampleFormat format)
{
    switch (format) {
    case ESampleFormat::Float64:
        return SF_FORMAT_DOUBLE;
    case ESampleFormat::Float32:
        return SF_FORMAT_FLOAT;
    case ESampleFormat::Int24:
        return SF_FORMAT_PCM_24;
    case ESampleFormat::Int16:
        break;
    }
    return SF_FORMAT_PCM_16;
}

int containerOf(std::int64_t frameCount, int channelCount, int sampleBytes)
{
    constexpr double kMaxWaveBytes = 4294900000.0; // 2^32 less room for the header
    const double bytes = static_cast<double>(frameCount) * channelCount * sampleBytes;
    return bytes > kMaxWaveBytes ? SF_FORMAT_RF64 : SF_FORMAT_WAV;
}

/// mkstemp keeps other users out; a result file has the rights that any new file gets.
void setUsualRights(int descriptor)
{
    const mode_t mask = umask(0);
    umask(mask);
    // Without the rights the file is still whole, so a refusal is no failure.
    [[maybe_unused]] const int result = fchmod(descriptor, 0666 & ~mask);
}

} // namespace

CSoundFileWriter::~CSoundFileWriter()
{
    file.reset();
    closeDescriptor();
    if (!temporaryPath.empty())
        unlink(temporaryPath.c_str());
}

CError* CSoundFileWriter::create(const std::string& path, int rate, int channelCount,
                                 std::int64_t frameCount, ESampleFormat format)
{
    finalPath = path;
    channels = channelCount;
    const CSampleFormatRow& row = sampleFormatRow(format);
    integerBits = row.integerBits;
    struct stat status = {};
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        return writeError("not a regular file");
    TSM_TRY(openTemporary());

    SF_INFO info = {};
    info.samplerate = rate;
    info.channels = channelCount;
    info.format = containerOf(frameCount, channelCount, row.bytes) | subtypeOf(format);
    file.reset(sf_open_fd(descriptor, SFM_WRITE, &info, SF_FALSE));
    if (!file)
        return writeError(sf_strerror(nullptr));
    // The chunk with the peaks carries the time of day: two renders would differ.
    sf_command(file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    return nullptr;
}

CError* CSoundFileWriter::openTemporary()
{
    const std::size_t slash = finalPath.rfind('/');
    const std::size_t nameAt = slash == std::string::npos ? 0 : slash + 1;
    std::string pattern = finalPath.substr(0, nameAt) + "." + finalPath.substr(nameAt) + ".XXXXXX";
    descriptor = mkstemp(pattern.data());
    if (descriptor < 0)
        return writeError(std::strerror(errno));
    temporaryPath = pattern;
    setUsualRights(descriptor);
    return nullptr;
}

CError* CSoundFileWriter::write(const double* frames, int frameCount)
{
    sf_count_t done = 0;
    if (integerBits > 0) {
        quantize(frames, static_cast<std::size_t>(frameCount) * static_cast<std::size_t>(channels));
        done = sf_writef_int(file.get(), quantized.data(), frameCount);
    } else {
        done = sf_writef_double(file.get(), frames, frameCount);
    }
    return done == frameCount ? nullptr : writeError(sf_strerror(file.get()));
}

void CSoundFileWriter::quantize(const double* samples, std::size_t count)
{
    const double scale = std::ldexp(1.0, integerBits - 1);
    const int shift = 32 - integerBits; // the library takes whole numbers at the top of 32 bits
    quantized.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double rounded = std::round(samples[i] * scale);
        const double kept = std::clamp(rounded, -scale, scale - 1.0);
        clippedCount += kept != rounded;
        quantized[i] = static_cast<int>(kept) * (1 << shift);
    }
}

CError* CSoundFileWriter::commit()
{
    if (sf_close(file.release()) != 0)
        return writeError("the file could not be completed");
    if (fsync(descriptor) != 0)
        return writeError(std::strerror(errno));
    closeDescriptor();
    if (std::rename(temporaryPath.c_str(), finalPath.c_str()) != 0)
        return writeError(std::strerror(errno));
    temporaryPath.clear();
    return nullptr;
}

CError* CSoundFileWriter::writeError(const char* reason)
{
    TSM_FAIL("can't write '%1': %2", CString::fromUtf8(finalPath), CString(reason).trimmed());
}

void CSoundFileWriter::closeDescriptor() noexcept
{
    if (descriptor >= 0)
        close(descriptor);
    descriptor = -1;
}

} // namespace tsm
