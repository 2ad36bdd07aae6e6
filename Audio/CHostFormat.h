#pragma once

#include "Audio/CHostBuffers.h"

#include <atomic>

namespace tsm {

class CAudioEnv;

/// The host's rate and channels as it gave them last, until the audio thread takes them over.
///
/// The environment's lock guards them. A host sets formats and processes on one thread at a time,
/// so that thread looks at the layouts without the lock.
class CHostFormat : public CCheckedObject {
public:
    /// The environment of the instance, which keeps the rate; borrowed. [setup]
    void setEnv(CAudioEnv& environment) noexcept { env = &environment; }

    /// The rate in Hz. Tells whether it is another one. [setup]
    bool setSampleRate(double rate);
    /// The main bus and the side-chain. [setup|audio] A lock only for other ones than before.
    void setInputs(const CHostLayout& mainBus, const CHostLayout& sidechainBus);
    /// [setup|audio] The same.
    void setOutput(const CHostLayout& outputBus);
    /// Tells whether another rate or count of channels was set since the last call, and gives what
    /// the graph has to know then: the count of all inputs and the rate in Hz. [audio] A lock only
    /// for a change.
    bool take(int& inputCount, double& rate);

    /// Of the thread that sets them. [setup|audio]
    [[nodiscard]] const CHostLayout& getMain() const noexcept { return main; }
    [[nodiscard]] const CHostLayout& getSidechain() const noexcept { return sidechain; }
    [[nodiscard]] const CHostLayout& getOutput() const noexcept { return output; }

    /// The same, and the rate in Hz, for others. [any] Under the lock.
    [[nodiscard]] int getMainCount() const;
    [[nodiscard]] int getSidechainCount() const;
    [[nodiscard]] int getOutputCount() const;
    [[nodiscard]] double getSampleRate() const;

private:
    CAudioEnv* env = nullptr;
    CHostLayout main{1, true, false};
    CHostLayout sidechain{0, true, false};
    CHostLayout output{1, true, false};
    std::atomic<bool> isChanged = true; // written under the lock, looked at without
};

} // namespace tsm
