#pragma once

#include "Audio/VST/ComponentBase.h"
#include "Audio/VST/ParameterContainer.h"

namespace Steinberg::Vst {

class EditorView;

/// A controller with a list of parameters: subclasses add theirs in initialize(). [control]
class EditController : public ComponentBase, public IEditController, public IEditController2 {
public:
    tresult queryInterface(const TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(ComponentBase)

    tresult initialize(FUnknown* context) override;
    /// Removes all parameters and drops the handler as well.
    tresult terminate() override;

    /// These three give kNotImplemented.
    tresult setComponentState(IBStream* state) override;
    tresult setEditorState(IBStream* state) override;
    tresult getEditorState(IBStream* state) override;

    int32 getParameterCount() override;
    /// kResultFalse for an index out of range.
    tresult getParameterInfo(int32 paramIndex, ParameterInfo& info) override;
    /// Both give kResultFalse for an unknown id, kInvalidArgument for a null text.
    tresult getParamStringByValue(ParamID id, ParamValue value, String128 string) override;
    tresult getParamValueByString(ParamID id, TChar* string, ParamValue& value) override;
    /// The value itself for an unknown id.
    ParamValue normalizedParamToPlain(ParamID id, ParamValue value) override;
    ParamValue plainParamToNormalized(ParamID id, ParamValue plainValue) override;
    /// 0.0 for an unknown id.
    ParamValue getParamNormalized(ParamID id) override;
    /// kResultTrue also when the value is the same; kResultFalse for an unknown id.
    tresult setParamNormalized(ParamID id, ParamValue value) override;
    tresult setComponentHandler(IComponentHandler* handler) override;
    /// Null.
    IPlugView* createView(FIDString name) override;

    /// kResultTrue, and for the other two kResultFalse: there is neither help nor about box.
    tresult setKnobMode(KnobMode mode) override;
    tresult openHelp(TBool onlyCheck) override;
    tresult openAboutBox(TBool onlyCheck) override;

    /// To the host's handler; kResultFalse without one.
    tresult beginEdit(ParamID id);
    tresult performEdit(ParamID id, ParamValue valueNormalized);
    tresult endEdit(ParamID id);
    /// To the second interface of the handler; kNotImplemented without it.
    tresult startGroupEdit();
    tresult finishGroupEdit();
    tresult setDirty(TBool state);
    tresult requestOpenEditor(FIDString name = kEditorViewType);

    /// A view of this controller got or lost its window, or goes away.
    virtual void editorAttached(EditorView*) {}
    virtual void editorRemoved(EditorView*) {}
    virtual void editorDestroyed(EditorView*) {}

    /// Borrowed; null when there is none.
    [[nodiscard]] Parameter* getParameterObject(ParamID id) const
    {
        return parameters.getParameter(id);
    }
    [[nodiscard]] IComponentHandler* getComponentHandler() const { return componentHandler.get(); }

protected:
    ParameterContainer parameters;

private:
    IPtr<IComponentHandler> componentHandler;
    IPtr<IComponentHandler2> componentHandler2;
};

} // namespace Steinberg::Vst
