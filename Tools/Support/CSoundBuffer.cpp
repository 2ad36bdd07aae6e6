#include "Tools/Support/CSoundBuffer.h"

#include <sndfile.h>

#include <algorithm>
#include <memory>

namespace tsm {

namespace {

constexpr std::size_t kFramesAtOnce = 4096;

struct CCloseSoundFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using CSoundFile = std::unique_ptr<SNDFILE, CCloseSoundFile>;

bool fail(const std::filesystem::path& path, const std::string& reason, std::string& error)
{
    error = path.string() + ": " + reason;
    return false;
}

/// Headers of unseekable or damaged files may tell any length, so the arrays grow with what comes.
bool readFrames(SNDFILE* file, CSoundBuffer& sound)
{
    const std::size_t channelCount = sound.channels.size();
    std::vector<double> mixed(kFramesAtOnce * channelCount);
    for (;;) {
        const sf_count_t count = sf_readf_double(file, mixed.data(), kFramesAtOnce);
        if (count <= 0)
            return true;
        const auto frames = static_cast<std::size_t>(count);
        if (sound.getFrameCount() + frames > CSoundBuffer::kMaxSamples / channelCount)
            return false;
        for (std::size_t c = 0; c < channelCount; ++c)
            for (std::size_t i = 0; i < frames; ++i)
                sound.channels[c].push_back(mixed[i * channelCount + c]);
    }
}

bool writeFrames(SNDFILE* file, const CSoundBuffer& sound)
{
    const std::size_t channelCount = sound.channels.size();
    std::vector<double> mixed(kFramesAtOnce * channelCount);
    for (std::size_t first = 0; first < sound.getFrameCount(); first += kFramesAtOnce) {
        const std::size_t frames = std::min(kFramesAtOnce, sound.getFrameCount() - first);
        for (std::size_t c = 0; c < channelCount; ++c)
            for (std::size_t i = 0; i < frames; ++i)
                mixed[i * channelCount + c] = sound.channels[c][first + i];
        const auto count = static_cast<sf_count_t>(frames);
        if (sf_writef_double(file, mixed.data(), count) != count)
            return false;
    }
    return true;
}

} // namespace

CSoundBuffer::CSoundBuffer(int sampleRate, std::size_t channelCount, std::size_t frameCount)
    : rate(sampleRate), channels(channelCount, std::vector<double>(frameCount))
{
}

CSoundBuffer CSoundBuffer::slice(std::size_t first, std::size_t count) const
{
    CSoundBuffer part;
    part.rate = rate;
    const std::size_t begin = std::min(first, getFrameCount());
    const std::size_t end = begin + std::min(count, getFrameCount() - begin);
    for (const std::vector<double>& channel : channels)
        part.channels.emplace_back(channel.begin() + static_cast<std::ptrdiff_t>(begin),
                                   channel.begin() + static_cast<std::ptrdiff_t>(end));
    return part;
}

bool CSoundBuffer::read(const std::filesystem::path& path, CSoundBuffer& sound, std::string& error)
{
    SF_INFO info{};
    const CSoundFile file(sf_open(path.c_str(), SFM_READ, &info));
    if (!file)
        return fail(path, sf_strerror(nullptr), error);
    if (info.channels < 1 || info.samplerate < 1)
        return fail(path, "no channels or no sample rate", error);
    CSoundBuffer fresh(info.samplerate, static_cast<std::size_t>(info.channels), 0);
    if (!readFrames(file.get(), fresh))
        return fail(path, "too long to hold in memory", error);
    if (sf_error(file.get()) != SF_ERR_NO_ERROR)
        return fail(path, sf_strerror(file.get()), error);
    sound = std::move(fresh);
    return true;
}

bool CSoundBuffer::write(const std::filesystem::path& path, std::string& error) const
{
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = static_cast<int>(channels.size());
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_24;
    CSoundFile file(sf_open(path.c_str(), SFM_WRITE, &info));
    if (!file)
        return fail(path, sf_strerror(nullptr), error);
    sf_command(file.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    if (!writeFrames(file.get(), *this))
        return fail(path, sf_strerror(file.get()), error);
    const int code = sf_close(file.release());
    return code == 0 || fail(path, sf_error_number(code), error);
}

} // namespace tsm
