#pragma once

#include "Audio/VST/Interfaces/IParameterChanges.h"

namespace tsm {
class CAudioWrapper;
} // namespace tsm

/// The parameter changes that a host sends with a block. [audio]
class CHostChanges {
public:
    /// `list` is borrowed. Changes of parameters from `count` on are left out; offsets are clamped
    /// into the block of `length` samples (0: all are due at its beginning).
    CHostChanges(Steinberg::Vst::IParameterChanges& list, int count, int length) noexcept
        : changes(list), paramCount(count), blockLength(length)
    {
    }

    /// Queues them as events. Of one parameter's points at most kMaxPoints are taken, evenly
    /// spaced, the last one always. Values that are no numbers are left out, others clamped to
    /// 0 to 1.
    void queue(tsm::CAudioWrapper& wrapper) const;

    static constexpr int kMaxPoints = 32;

private:
    void queuePoints(Steinberg::Vst::IParamValueQueue& points, tsm::CAudioWrapper& wrapper) const;
    void queuePoint(Steinberg::Vst::IParamValueQueue& points, int index,
                    tsm::CAudioWrapper& wrapper) const;

    Steinberg::Vst::IParameterChanges& changes;
    int paramCount;
    int blockLength;
};
