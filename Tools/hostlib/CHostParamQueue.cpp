#include "Tools/hostlib/CHostParamQueue.h"

#include <algorithm>
#include <cstddef>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

tresult CHostParamQueue::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IParamValueQueue>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

int32 CHostParamQueue::getPointCount()
{
    return static_cast<int32>(points.size());
}

tresult CHostParamQueue::getPoint(int32 index, int32& sampleOffset, ParamValue& value)
{
    if (index < 0 || index >= getPointCount())
        return kResultFalse;
    const CPoint& point = points[static_cast<std::size_t>(index)];
    sampleOffset = point.offset;
    value = point.value;
    return kResultTrue;
}

tresult CHostParamQueue::addPoint(int32 sampleOffset, ParamValue value, int32& index)
{
    const auto place =
        std::lower_bound(points.begin(), points.end(), sampleOffset,
                         [](const CPoint& point, int32 offset) { return point.offset < offset; });
    index = static_cast<int32>(place - points.begin());
    if (place != points.end() && place->offset == sampleOffset)
        place->value = value;
    else
        points.insert(place, {sampleOffset, value});
    return kResultTrue;
}

void CHostParamQueue::restart(ParamID id)
{
    paramId = id;
    points.clear();
}

} // namespace tsm
