#include "Audio/VST/ParameterContainer.h"

namespace Steinberg::Vst {

Parameter* ParameterContainer::addParameter(std::unique_ptr<Parameter> parameter)
{
    Parameter* const added = parameter.get();
    if (!added)
        return nullptr;
    parameters.push_back(std::move(parameter));
    byId[added->getInfo().id] = added;
    return added;
}

Parameter* ParameterContainer::addParameter(const ParameterInfo& info)
{
    return addParameter(std::make_unique<Parameter>(info));
}

void ParameterContainer::removeAll()
{
    byId.clear();
    parameters.clear();
}

Parameter* ParameterContainer::getParameterByIndex(int32 index) const
{
    const bool isThere = index >= 0 && index < getParameterCount();
    return isThere ? parameters[static_cast<std::size_t>(index)].get() : nullptr;
}

Parameter* ParameterContainer::getParameter(ParamID id) const
{
    const auto found = byId.find(id);
    return found != byId.end() ? found->second : nullptr;
}

} // namespace Steinberg::Vst
