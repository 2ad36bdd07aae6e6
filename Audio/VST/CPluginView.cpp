#include "Audio/VST/CPluginView.h"

namespace Steinberg {

tresult CPluginView::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IPlugView>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

tresult CPluginView::isPlatformTypeSupported(FIDString)
{
    return kNotImplemented;
}

tresult CPluginView::attached(void* parent, FIDString)
{
    systemWindow = parent;
    attachedToParent();
    return kResultOk;
}

tresult CPluginView::removed()
{
    systemWindow = nullptr;
    removedFromParent();
    return kResultOk;
}

tresult CPluginView::onWheel(float)
{
    return kResultFalse;
}

tresult CPluginView::onKeyDown(char16, int16, int16)
{
    return kResultFalse;
}

tresult CPluginView::onKeyUp(char16, int16, int16)
{
    return kResultFalse;
}

tresult CPluginView::onFocus(TBool)
{
    return kResultFalse;
}

tresult CPluginView::canResize()
{
    return kResultFalse;
}

tresult CPluginView::checkSizeConstraint(ViewRect*)
{
    return kResultFalse;
}

tresult CPluginView::getSize(ViewRect* size)
{
    if (!size)
        return kInvalidArgument;
    *size = rect;
    return kResultTrue;
}

tresult CPluginView::onSize(ViewRect* newSize)
{
    if (newSize)
        rect = *newSize;
    return kResultTrue;
}

tresult CPluginView::setFrame(IPlugFrame* frame)
{
    plugFrame = IPtr<IPlugFrame>(frame);
    return kResultTrue;
}

} // namespace Steinberg
