#pragma once

#include "Audio/VST/CPluginView.h"
#include "Audio/VST/EditController.h"

namespace Steinberg::Vst {

/// A controller's view: keeps a reference to it and tells it of window and end.
class EditorView : public CPluginView {
public:
    EditorView(EditController* owner, const ViewRect& size);
    ~EditorView() override;

    [[nodiscard]] EditController* getController() const { return controller.get(); }

protected:
    void attachedToParent() override;
    void removedFromParent() override;

private:
    IPtr<EditController> controller;
};

} // namespace Steinberg::Vst
