#include "Tools/Support/CSoundFileWriter.h"

#include <algorithm>
#include <cmath>

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

} // namespace

CError* CSoundFileWriter::create(const std::string& path, int rate, int channelCount,
                                 std::int64_t frameCount, ESampleFormat format)
{
    channels = channelCount;
    const CSampleFormatRow& row = sampleFormatRow(format);
    integerBits = row.integerBits;
    TSM_TRY(target.create(path));

    SF_INFO info = {};
    info.samplerate = rate;
    info.channels = channelCount;
    info.format = containerOf(frameCount, channelCount, row.bytes) | subtypeOf(format);
    file.reset(sf_open_fd(target.getDescriptor(), SFM_WRITE, &info, SF_FALSE));
    if (!file)
        return target.writeError(sf_strerror(nullptr));
    // The chunk with the peaks carries the time of day: two renders would differ.
    sf_command(file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
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
    return done == frameCount ? nullptr : target.writeError(sf_strerror(file.get()));
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
        return target.writeError("the file could not be completed");
    return target.commit();
}

} // namespace tsm
