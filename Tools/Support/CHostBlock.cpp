#include "Tools/Support/CHostBlock.h"

namespace tsm {

namespace {

template <class Sample>
void scatter(Sample* buffers, std::size_t step, std::size_t channels, const double* frames,
             std::size_t count)
{
    for (std::size_t channel = 0; channel < channels; ++channel)
        for (std::size_t i = 0; i < count; ++i)
            buffers[channel * step + i] = static_cast<Sample>(frames[i * channels + channel]);
}

template <class Sample>
void gather(const Sample* buffers, std::size_t step, std::size_t channels, double* frames,
            std::size_t count)
{
    for (std::size_t channel = 0; channel < channels; ++channel)
        for (std::size_t i = 0; i < count; ++i)
            frames[i * channels + channel] = static_cast<double>(buffers[channel * step + i]);
}

} // namespace

CHostBlock::CHostBlock(int channelCount, int maxFrames, bool useFloat)
    : channels(static_cast<std::size_t>(channelCount)), step(static_cast<std::size_t>(maxFrames)),
      isFloat(useFloat)
{
    if (isFloat)
        layOut(floatRoom);
    else
        layOut(doubleRoom);
}

template <class Sample>
void CHostBlock::layOut(std::vector<Sample>& room)
{
    room.resize(2 * channels * step);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        inputs.push_back(room.data() + channel * step);
        outputs.push_back(room.data() + (channels + channel) * step);
    }
}

void CHostBlock::setInput(const double* frames, int count)
{
    const auto frameCount = static_cast<std::size_t>(count);
    if (isFloat)
        scatter(floatRoom.data(), step, channels, frames, frameCount);
    else
        scatter(doubleRoom.data(), step, channels, frames, frameCount);
}

void CHostBlock::getOutput(double* frames, int count) const
{
    const auto frameCount = static_cast<std::size_t>(count);
    const std::size_t firstOutput = channels * step;
    if (isFloat)
        gather(floatRoom.data() + firstOutput, step, channels, frames, frameCount);
    else
        gather(doubleRoom.data() + firstOutput, step, channels, frames, frameCount);
}

} // namespace tsm
