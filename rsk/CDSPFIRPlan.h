#pragma once

namespace tsm::rsk {

/// The cheapest cut of a filter into stages of growing block size, each of which works at its
/// blocks' ends only. A stage takes up as many partitions as fit before the next stage's block is
/// through, so all line up with the latency of the first one's block (Garcia, "Optimal filter
/// partition for efficient convolution with short input/output delay", 2002).
struct CDSPFIRPlan {
    static constexpr int kMinOrder = 4;
    static constexpr int kMaxOrder = 14;
    static constexpr int kMaxStages = kMaxOrder - kMinOrder + 1;

    struct CStage {
        int order; // of the block size
        int partitions;
    };

    /// The plan for `tapCount` taps (1 at least) with a first block of 2^firstOrder. [any]
    CDSPFIRPlan(int firstOrder, int tapCount) noexcept;

    int stageCount = 0;
    CStage stages[kMaxStages];
};

} // namespace tsm::rsk
