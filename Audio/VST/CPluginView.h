#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/IPtr.h"
#include "Audio/VST/Interfaces/IPlugView.h"

namespace Steinberg {

/// A view without a window of its own: keeps rectangle, frame and parent.
class CPluginView : public FObject, public IPlugView {
public:
    explicit CPluginView(const ViewRect& size) : rect(size) {}

    tresult queryInterface(const TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(FObject)

    /// kNotImplemented.
    tresult isPlatformTypeSupported(FIDString type) override;
    /// Keeps the parent and calls attachedToParent(); neither type nor state is looked at.
    tresult attached(void* parent, FIDString type) override;
    tresult removed() override;
    /// These give kResultFalse.
    tresult onWheel(float distance) override;
    tresult onKeyDown(char16 key, int16 keyCode, int16 modifiers) override;
    tresult onKeyUp(char16 key, int16 keyCode, int16 modifiers) override;
    tresult onFocus(TBool state) override;
    tresult canResize() override;
    tresult checkSizeConstraint(ViewRect* rect) override;
    /// kInvalidArgument for null.
    tresult getSize(ViewRect* size) override;
    /// Null is ignored.
    tresult onSize(ViewRect* newSize) override;
    tresult setFrame(IPlugFrame* frame) override;

    [[nodiscard]] const ViewRect& getRect() const { return rect; }
    [[nodiscard]] bool isAttached() const { return systemWindow != nullptr; }
    /// Borrowed; null when there is none.
    [[nodiscard]] IPlugFrame* getFrame() const { return plugFrame.get(); }

protected:
    virtual void attachedToParent() {}
    virtual void removedFromParent() {}

    ViewRect rect;
    void* systemWindow = nullptr; // the host's, by platform type

private:
    IPtr<IPlugFrame> plugFrame;
};

} // namespace Steinberg
