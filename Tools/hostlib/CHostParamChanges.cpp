#include "Tools/hostlib/CHostParamChanges.h"

#include <cstddef>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

tresult CHostParamChanges::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IParameterChanges>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

IParamValueQueue* CHostParamChanges::getParameterData(int32 index)
{
    const bool isThere = index >= 0 && index < usedCount;
    return isThere ? queues[static_cast<std::size_t>(index)].get() : nullptr;
}

IParamValueQueue* CHostParamChanges::addParameterData(const ParamID& id, int32& index)
{
    for (index = 0; index < usedCount; ++index)
        if (queues[static_cast<std::size_t>(index)]->getParameterId() == id)
            return getParameterData(index);
    if (static_cast<std::size_t>(index) == queues.size())
        queues.push_back(IPtr<CHostParamQueue>::owned(new CHostParamQueue));
    queues[static_cast<std::size_t>(index)]->restart(id);
    ++usedCount;
    return getParameterData(index);
}

void CHostParamChanges::add(ParamID id, int32 offset, double value)
{
    int32 index = 0;
    addParameterData(id, index)->addPoint(offset, value, index);
}

} // namespace tsm
