#include "Audio/VST/CHostChanges.h"

#include "Audio/CAudioWrapper.h"

#include <algorithm>
#include <cmath>

using namespace Steinberg;
using namespace Steinberg::Vst;

void CHostChanges::queue(tsm::CAudioWrapper& wrapper) const
{
    const int32 count = changes.getParameterCount();
    for (int32 i = 0; i < count; ++i) {
        IParamValueQueue* points = changes.getParameterData(i);
        if (points && points->getParameterId() < static_cast<ParamID>(paramCount))
            queuePoints(*points, wrapper);
    }
}

void CHostChanges::queuePoints(IParamValueQueue& points, tsm::CAudioWrapper& wrapper) const
{
    const std::int64_t count = points.getPointCount();
    const std::int64_t taken = std::min<std::int64_t>(count, kMaxPoints);
    for (std::int64_t i = 0; i < taken - 1; ++i)
        queuePoint(points, static_cast<int>(i * count / taken), wrapper);
    if (count > 0)
        queuePoint(points, static_cast<int>(count - 1), wrapper);
}

void CHostChanges::queuePoint(IParamValueQueue& points, int index,
                              tsm::CAudioWrapper& wrapper) const
{
    int32 offset = 0;
    ParamValue value = 0.0;
    if (points.getPoint(index, offset, value) != kResultOk || !std::isfinite(value))
        return;
    const int last = std::max(blockLength - 1, 0);
    wrapper.queueParamEvent(static_cast<std::uint32_t>(std::clamp<int>(offset, 0, last)),
                            static_cast<std::int32_t>(points.getParameterId()),
                            std::clamp(value, 0.0, 1.0));
}
