#pragma once

#include "Audio/VST/Interfaces/IAudioProcessor.h"

#include <vector>

namespace tsm {

/// The buffers of one bus as a host gives them, with a guard on both sides of each channel, by
/// which writing where it isn't allowed shows.
class CBusRoom {
public:
    CBusRoom(int channelCount, int maxFrames, bool isDouble);

    /// The structure for the plug-in; valid as long as the object.
    [[nodiscard]] Steinberg::Vst::AudioBusBuffers describe();
    [[nodiscard]] int getChannelCount() const { return channels; }

    /// Makes all samples a value that no plug-in writes, guards and room alike.
    void mark();
    void write(int channel, const double* samples, int count);
    void read(int channel, double* samples, int count) const;
    void silence(int count);

    /// Whether nothing but the first `count` samples of channels has been written since mark().
    [[nodiscard]] bool isGuarded(int count) const;
    /// Whether a sample of the first `count` still has the mark.
    [[nodiscard]] bool hasMark(int count) const;
    /// Whether the first samples are these.
    [[nodiscard]] bool holds(int channel, const double* samples, int count) const;

private:
    [[nodiscard]] double get(std::size_t place) const;
    void set(std::size_t place, double value);
    [[nodiscard]] std::size_t placeOf(int channel) const;

    int channels;
    bool usesDouble;
    std::size_t step; // from one channel to the next
    std::vector<double> doubles;
    std::vector<float> floats;
    std::vector<double*> doublePointers;
    std::vector<float*> floatPointers;
};

} // namespace tsm
