// A sound file of any kind: headers, and some of its samples, at once and in pieces.

#include "Core/CMemoryReader.h"
#include "Other/CWaveFile.h"
#include "Tests/Fuzz/FuzzTarget.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace tsm {
namespace {

constexpr int kFrames = 256;

/// The frames from `first` on, channel after channel, in reads of `step`; empty after a failure.
std::vector<double> readFrames(CWaveFile& file, std::int64_t first, int step)
{
    const auto channelCount = static_cast<std::size_t>(file.getChannelCount());
    std::vector<double> samples(channelCount * kFrames);
    if (hasFailed(file.setSamplePos(first)))
        return {};
    for (int done = 0; done < kFrames;) {
        std::vector<double*> channels;
        for (std::size_t c = 0; c < channelCount; ++c)
            channels.push_back(&samples[c * kFrames + static_cast<std::size_t>(done)]);
        const int count = std::min(step, kFrames - done);
        std::int64_t gotten = 0;
        if (hasFailed(file.read(channels.data(), count, gotten)))
            return {};
        promise(gotten <= count && (gotten > 0 || gotten == -1), "a read gives frames or the end");
        if (gotten < 0)
            break;
        promise(first + done + gotten <= file.getSampleCount(), "no frame is behind the last one");
        done += static_cast<int>(gotten);
    }
    return samples;
}

void checkSame(const std::vector<double>& a, const std::vector<double>& b)
{
    promise(a.size() == b.size(), "pieces are read as far as the whole");
    for (std::size_t i = 0; i < a.size(); ++i)
        promise(std::bit_cast<std::uint64_t>(a[i]) == std::bit_cast<std::uint64_t>(b[i]),
                "pieces hold what the whole holds");
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CMemoryReader source(data, static_cast<int>(size));
    CWaveFile file;
    if (hasFailed(file.open(source))) {
        promise(file.getSampleCount() == 0, "a file that didn't open has no samples");
        return;
    }
    promise(file.getChannelCount() >= 1 && file.getChannelCount() <= CWaveFormat::kMaxChannels,
            "the count of channels is one that is read");
    promise(file.getFrameSize() >= file.getChannelCount(), "a frame has a byte a channel at least");
    promise(file.getSampleCount() >= 0, "no count is negative");
    checkSame(readFrames(file, 0, kFrames), readFrames(file, 0, 7));
    const std::int64_t middle = file.getSampleCount() / 2;
    checkSame(readFrames(file, middle, kFrames), readFrames(file, middle, 1));
    promise(hasFailed(file.setSamplePos(file.getSampleCount() + 1)), "no place behind the end");
}

} // namespace tsm
