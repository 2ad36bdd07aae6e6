#include "Tools/conform/CBareInstance.h"

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

CError* CBareInstance::make(const CPlugin& plugin)
{
    IPluginFactory& factory = plugin.getFactory();
    void* made = nullptr;
    if (factory.createInstance(plugin.getEffect().id, IComponent::iid, &made) != kResultOk || !made)
        TSM_FAIL("the factory makes no component");
    component = IPtr<IComponent>::owned(static_cast<IComponent*>(made));
    processor = queryAs<IAudioProcessor>(component.get());
    if (!processor)
        TSM_FAIL("the component has no IAudioProcessor");
    controller = queryAs<IEditController>(component.get());
    if (controller)
        return nullptr;
    TUID id = {};
    made = nullptr;
    if (component->getControllerClassId(id) != kResultOk ||
        factory.createInstance(id, IEditController::iid, &made) != kResultOk || !made)
        TSM_FAIL("the factory makes no controller");
    controller = IPtr<IEditController>::owned(static_cast<IEditController*>(made));
    hasOwnController = true;
    return nullptr;
}

tresult CBareInstance::initialize(const CPlugin& plugin) const
{
    const tresult result = component->initialize(plugin.getContext().asUnknown());
    if (hasOwnController)
        controller->initialize(plugin.getContext().asUnknown());
    return result;
}

tresult CBareInstance::terminate() const
{
    if (hasOwnController)
        controller->terminate();
    return component->terminate();
}

tresult CBareInstance::setUp(double rate, int maxBlock, bool isDouble) const
{
    ProcessSetup setup{kRealtime, isDouble ? kSample64 : kSample32, maxBlock, rate};
    return processor->setupProcessing(setup);
}

} // namespace tsm
