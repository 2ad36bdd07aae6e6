#include "Tools/Support/CSoundBuffer.h"

#include "Core/CPtr.h"
#include "Tools/Support/CSoundFileReader.h"
#include "Tools/Support/CSoundFileWriter.h"

#include <algorithm>

namespace tsm {

namespace {

constexpr int kFramesAtOnce = 4096;

/// What the callers of this class show.
bool succeed(CError* failure, std::string& error)
{
    const CPtr<CError> owned(failure);
    if (owned)
        error = owned->getMessage().toUtf8();
    return !owned;
}

/// Headers may tell any length, so the arrays grow with what comes.
CError* readChannels(CSoundFileReader& file, CSoundBuffer& sound)
{
    const std::size_t channelCount = sound.channels.size();
    std::vector<double> mixed(kFramesAtOnce * channelCount);
    for (std::int64_t left = file.getFrameCount(); left > 0; left -= kFramesAtOnce) {
        const auto count = static_cast<int>(std::min<std::int64_t>(left, kFramesAtOnce));
        TSM_TRY(file.read(mixed.data(), count));
        for (std::size_t c = 0; c < channelCount; ++c)
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
                sound.channels[c].push_back(mixed[i * channelCount + c]);
    }
    return nullptr;
}

CError* readFile(const std::string& path, CSoundBuffer& sound)
{
    CSoundFileReader file;
    TSM_TRY(file.open(path));
    const auto channelCount = static_cast<std::size_t>(file.getChannelCount());
    if (static_cast<std::size_t>(file.getFrameCount()) > CSoundBuffer::kMaxSamples / channelCount)
        TSM_FAIL("'%1' is too long to hold in memory", CString::fromUtf8(path));
    CSoundBuffer fresh(file.getRate(), channelCount, 0);
    TSM_TRY(readChannels(file, fresh));
    sound = std::move(fresh);
    return nullptr;
}

CError* writeFile(const std::string& path, const CSoundBuffer& sound)
{
    const std::size_t channelCount = sound.channels.size();
    const std::size_t total = sound.getFrameCount();
    CSoundFileWriter file;
    TSM_TRY(file.create(path, sound.rate, static_cast<int>(channelCount),
                        static_cast<std::int64_t>(total), ESampleFormat::Int24));
    std::vector<double> mixed(kFramesAtOnce * channelCount);
    for (std::size_t first = 0; first < total; first += kFramesAtOnce) {
        const std::size_t count = std::min<std::size_t>(kFramesAtOnce, total - first);
        for (std::size_t c = 0; c < channelCount; ++c)
            for (std::size_t i = 0; i < count; ++i)
                mixed[i * channelCount + c] = sound.channels[c][first + i];
        TSM_TRY(file.write(mixed.data(), static_cast<int>(count)));
    }
    return file.commit();
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
    return succeed(readFile(path.string(), sound), error);
}

bool CSoundBuffer::write(const std::filesystem::path& path, std::string& error) const
{
    return succeed(writeFile(path.string(), *this), error);
}

} // namespace tsm
