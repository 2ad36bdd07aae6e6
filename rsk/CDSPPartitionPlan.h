#pragma once

namespace tsm::rsk {

/// How an impulse is cut for convolution without latency: a head that is convolved directly, then
/// stages of growing block size. A stage's first tap lies 2.5 blocks and its delay behind its
/// input, which is the time it needs, and where the stage before it ends.
struct CDSPPartitionPlan {
    static constexpr int kMaxStages = 5;
    static constexpr int kMaxShortImpulse = 65536;

    struct CStage {
        int order;      // of the block size
        int firstTap;   // of the stage's first partition
        int partitions; // of one block each; the last may reach beyond the impulse
        int delay;      // samples beyond the 2.5 blocks
    };

    /// The plan of an impulse of `length` taps, 1 at least. [any]
    explicit CDSPPartitionPlan(int length) noexcept;

    int headLength;
    int stageCount = 0;
    CStage stages[kMaxStages];
};

} // namespace tsm::rsk
