#include "Tools/conform/CBusRoom.h"

#include <algorithm>
#include <cmath>

namespace tsm {

namespace {

constexpr std::size_t kGuard = 16;
constexpr double kMark = 0x1.8p100; // the same in both sample sizes

/// Equal as bits would be, as far as sounds go: a NaN equals a NaN.
bool isSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

CBusRoom::CBusRoom(int channelCount, int maxFrames, bool isDouble)
    : channels(channelCount), usesDouble(isDouble),
      step(static_cast<std::size_t>(maxFrames) + 2 * kGuard)
{
    const std::size_t count = step * static_cast<std::size_t>(channels);
    doubles.resize(usesDouble ? count : 0);
    floats.resize(usesDouble ? 0 : count);
    for (int channel = 0; channel < channels; ++channel) {
        if (usesDouble)
            doublePointers.push_back(doubles.data() + placeOf(channel));
        else
            floatPointers.push_back(floats.data() + placeOf(channel));
    }
    mark();
}

Steinberg::Vst::AudioBusBuffers CBusRoom::describe()
{
    Steinberg::Vst::AudioBusBuffers bus = {};
    bus.numChannels = channels;
    if (usesDouble)
        bus.channelBuffers64 = doublePointers.data();
    else
        bus.channelBuffers32 = floatPointers.data();
    return bus;
}

void CBusRoom::mark()
{
    std::ranges::fill(doubles, kMark);
    std::ranges::fill(floats, static_cast<float>(kMark));
}

void CBusRoom::write(int channel, const double* samples, int count)
{
    for (int i = 0; i < count; ++i)
        set(placeOf(channel) + static_cast<std::size_t>(i), samples[i]);
}

void CBusRoom::read(int channel, double* samples, int count) const
{
    for (int i = 0; i < count; ++i)
        samples[i] = get(placeOf(channel) + static_cast<std::size_t>(i));
}

void CBusRoom::silence(int count)
{
    for (int channel = 0; channel < channels; ++channel)
        for (int i = 0; i < count; ++i)
            set(placeOf(channel) + static_cast<std::size_t>(i), 0.0);
}

bool CBusRoom::isGuarded(int count) const
{
    for (int channel = 0; channel < channels; ++channel) {
        const std::size_t first = placeOf(channel);
        const std::size_t last = first + static_cast<std::size_t>(count);
        for (std::size_t i = first - kGuard; i < first - kGuard + step; ++i)
            if ((i < first || i >= last) && get(i) != kMark)
                return false;
    }
    return true;
}

bool CBusRoom::hasMark(int count) const
{
    for (int channel = 0; channel < channels; ++channel)
        for (int i = 0; i < count; ++i)
            if (get(placeOf(channel) + static_cast<std::size_t>(i)) == kMark)
                return true;
    return false;
}

bool CBusRoom::holds(int channel, const double* samples, int count) const
{
    for (int i = 0; i < count; ++i) {
        const double wanted =
            usesDouble ? samples[i] : static_cast<double>(static_cast<float>(samples[i]));
        if (!isSame(get(placeOf(channel) + static_cast<std::size_t>(i)), wanted))
            return false;
    }
    return true;
}

double CBusRoom::get(std::size_t place) const
{
    return usesDouble ? doubles[place] : static_cast<double>(floats[place]);
}

void CBusRoom::set(std::size_t place, double value)
{
    if (usesDouble)
        doubles[place] = value;
    else
        floats[place] = static_cast<float>(value);
}

std::size_t CBusRoom::placeOf(int channel) const
{
    return static_cast<std::size_t>(channel) * step + kGuard;
}

} // namespace tsm
