#pragma once

#include "Audio/CAudioProcessBase.h"

namespace tsm {

/// The end of the graph: its input channels are what the host gets, and its input latency is the
/// latency of the whole.
class CModOutput : public CAudioProcessBase {
public:
    /// Writes the latency into the environment.
    void update() override;
    /// Takes the inputs of the sub-block; they stay readable until `clear`.
    void process() override;
    /// Drops the blocks.
    void clear() noexcept { releaseInputs(); }
};

} // namespace tsm
