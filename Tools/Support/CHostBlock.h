#pragma once

#include <cstddef>
#include <vector>

namespace tsm {

/// The sample buffers of a host: one for each channel, of 64-bit or 32-bit samples, in and out.
class CHostBlock {
public:
    /// `maxFrames` bounds the blocks.
    CHostBlock(int channelCount, int maxFrames, bool useFloat);

    /// Takes `count` interleaved frames as the input.
    void setInput(const double* frames, int count);
    /// Gives the first `count` frames of the output, interleaved.
    void getOutput(double* frames, int count) const;

    [[nodiscard]] const void* const* getInputs() const { return inputs.data(); }
    [[nodiscard]] void* const* getOutputs() const { return outputs.data(); }

private:
    template <class Sample>
    void layOut(std::vector<Sample>& room);

    std::size_t channels;
    std::size_t step; // from one channel's buffer to the next; inputs first, then outputs
    bool isFloat;
    std::vector<double> doubleRoom;
    std::vector<float> floatRoom;
    std::vector<const void*> inputs;
    std::vector<void*> outputs;
};

} // namespace tsm
