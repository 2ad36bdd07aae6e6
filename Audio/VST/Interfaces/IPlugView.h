#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg {

class IPlugView;

/// In physical pixels; right and bottom are exclusive.
struct ViewRect {
    int32 left = 0;
    int32 top = 0;
    int32 right = 0;
    int32 bottom = 0;

    [[nodiscard]] int32 getWidth() const { return right - left; }
    [[nodiscard]] int32 getHeight() const { return bottom - top; }
};

constexpr FIDString kPlatformTypeHWND = "HWND";
constexpr FIDString kPlatformTypeX11EmbedWindowID = "X11EmbedWindowID";

/// The host's frame round a view. On Linux it also offers Linux::IRunLoop.
class IPlugFrame : public FUnknown {
    TSM_VST_INTERFACE(IPlugFrame, 0x367FAF01, 0xAFA94693, 0x8D4DA2A0, 0xED0882A3)

    /// Asks for another size; the host answers with onSize() within the call.
    virtual tresult resizeView(IPlugView* view, ViewRect* newSize) = 0;
};

/// A plug-in's window inside of the host's. On the host's thread of windows.
class IPlugView : public FUnknown {
    TSM_VST_INTERFACE(IPlugView, 0x5BC32507, 0xD06049EA, 0xA6151B52, 0x2B755B29)

    virtual tresult isPlatformTypeSupported(FIDString type) = 0;
    virtual tresult attached(void* parent, FIDString type) = 0;
    virtual tresult removed() = 0;
    /// These three give kResultTrue only when the event was used.
    virtual tresult onWheel(float distance) = 0;
    virtual tresult onKeyDown(char16 key, int16 keyCode, int16 modifiers) = 0;
    virtual tresult onKeyUp(char16 key, int16 keyCode, int16 modifiers) = 0;
    virtual tresult getSize(ViewRect* size) = 0;
    virtual tresult onSize(ViewRect* newSize) = 0;
    virtual tresult onFocus(TBool state) = 0;
    virtual tresult setFrame(IPlugFrame* frame) = 0;
    virtual tresult canResize() = 0;
    virtual tresult checkSizeConstraint(ViewRect* rect) = 0;
};

/// Optional beside IPlugView: the host tells how large a point is.
class IPlugViewContentScaleSupport : public FUnknown {
    TSM_VST_INTERFACE(IPlugViewContentScaleSupport, 0x65ED9690, 0x8AC44525, 0x8AADEF7A, 0x72EA703F)

    virtual tresult setContentScaleFactor(float factor) = 0;
};

} // namespace Steinberg
