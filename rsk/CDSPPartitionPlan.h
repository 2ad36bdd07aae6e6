#pragma once

namespace tsm::rsk {

/// How an impulse is cut for convolution without latency (Gardner, "Efficient convolution without
/// input-output delay", 1995): a head that is convolved directly, then stages of growing block
/// size. A stage's first tap lies one block and its lag behind its input, which is the time it has,
/// and where the stage before it ends.
///
/// The places where the block size changes are the same for all impulses, so that a convolver's
/// stages stay what they are when the impulse changes. Large steps keep the stages few, each of
/// which pays for transforms of its own; a stage goes on for longer before another would pay. The
/// long ones have a lag, so that their two transforms fall into different blocks of the host's.
struct CDSPPartitionPlan {
    static constexpr int kMaxStages = 4;

    struct CStage {
        int order;      // of the block size
        int lag;        // samples, less than a block
        int partitions; // of one block each; the last may reach beyond the impulse
    };

    /// The plan of an impulse of `length` taps, 1 at least. [any]
    explicit CDSPPartitionPlan(int length) noexcept;

    int headLength;
    int stageCount = 0;
    CStage stages[kMaxStages];
};

} // namespace tsm::rsk
