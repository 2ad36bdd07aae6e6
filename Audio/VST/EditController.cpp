#include "Audio/VST/EditController.h"

namespace Steinberg::Vst {

tresult EditController::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IEditController>(wanted, obj, this) ||
        giveInterface<IEditController2>(wanted, obj, this))
        return kResultOk;
    return ComponentBase::queryInterface(wanted, obj);
}

tresult EditController::initialize(FUnknown* context)
{
    return ComponentBase::initialize(context);
}

tresult EditController::terminate()
{
    setComponentHandler(nullptr);
    parameters.removeAll();
    return ComponentBase::terminate();
}

tresult EditController::setComponentState(IBStream*)
{
    return kNotImplemented;
}

tresult EditController::setEditorState(IBStream*)
{
    return kNotImplemented;
}

tresult EditController::getEditorState(IBStream*)
{
    return kNotImplemented;
}

int32 EditController::getParameterCount()
{
    return parameters.getParameterCount();
}

tresult EditController::getParameterInfo(int32 paramIndex, ParameterInfo& info)
{
    const Parameter* parameter = parameters.getParameterByIndex(paramIndex);
    if (!parameter)
        return kResultFalse;
    info = parameter->getInfo();
    return kResultTrue;
}

tresult EditController::getParamStringByValue(ParamID id, ParamValue value, String128 string)
{
    if (!string)
        return kInvalidArgument;
    const Parameter* parameter = getParameterObject(id);
    if (!parameter)
        return kResultFalse;
    parameter->toString(value, string);
    return kResultTrue;
}

tresult EditController::getParamValueByString(ParamID id, TChar* string, ParamValue& value)
{
    if (!string)
        return kInvalidArgument;
    const Parameter* parameter = getParameterObject(id);
    return parameter && parameter->fromString(string, value) ? kResultTrue : kResultFalse;
}

ParamValue EditController::normalizedParamToPlain(ParamID id, ParamValue value)
{
    const Parameter* parameter = getParameterObject(id);
    return parameter ? parameter->toPlain(value) : value;
}

ParamValue EditController::plainParamToNormalized(ParamID id, ParamValue plainValue)
{
    const Parameter* parameter = getParameterObject(id);
    return parameter ? parameter->toNormalized(plainValue) : plainValue;
}

ParamValue EditController::getParamNormalized(ParamID id)
{
    const Parameter* parameter = getParameterObject(id);
    return parameter ? parameter->getNormalized() : 0.0;
}

tresult EditController::setParamNormalized(ParamID id, ParamValue value)
{
    Parameter* parameter = getParameterObject(id);
    if (!parameter)
        return kResultFalse;
    parameter->setNormalized(value);
    return kResultTrue;
}

tresult EditController::setComponentHandler(IComponentHandler* handler)
{
    if (handler == componentHandler.get())
        return kResultTrue;
    componentHandler = IPtr<IComponentHandler>(handler);
    componentHandler2 = queryAs<IComponentHandler2>(handler);
    return kResultTrue;
}

IPlugView* EditController::createView(FIDString)
{
    return nullptr;
}

tresult EditController::setKnobMode(KnobMode)
{
    return kResultTrue;
}

tresult EditController::openHelp(TBool)
{
    return kResultFalse;
}

tresult EditController::openAboutBox(TBool)
{
    return kResultFalse;
}

tresult EditController::beginEdit(ParamID id)
{
    return componentHandler ? componentHandler->beginEdit(id) : kResultFalse;
}

tresult EditController::performEdit(ParamID id, ParamValue valueNormalized)
{
    return componentHandler ? componentHandler->performEdit(id, valueNormalized) : kResultFalse;
}

tresult EditController::endEdit(ParamID id)
{
    return componentHandler ? componentHandler->endEdit(id) : kResultFalse;
}

tresult EditController::startGroupEdit()
{
    return componentHandler2 ? componentHandler2->startGroupEdit() : kNotImplemented;
}

tresult EditController::finishGroupEdit()
{
    return componentHandler2 ? componentHandler2->finishGroupEdit() : kNotImplemented;
}

tresult EditController::setDirty(TBool state)
{
    return componentHandler2 ? componentHandler2->setDirty(state) : kNotImplemented;
}

tresult EditController::requestOpenEditor(FIDString name)
{
    return componentHandler2 ? componentHandler2->requestOpenEditor(name) : kNotImplemented;
}

} // namespace Steinberg::Vst
