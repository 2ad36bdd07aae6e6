#pragma once

#include "Audio/CWrapperSettings.h"
#include "Core/CObject.h"

namespace tsm {

/// The size of the editor's window: the product's own size, scaled as the user wants it.
class CEditorSize : public CCheckedObject {
public:
    /// Takes the scale from the settings and the screen's size in pixels, 0 by 0 without one. A
    /// screen whose smaller side has 1080 pixels has the scale 1. The result is a multiple of 0.05
    /// and at least 0.8. [setup]
    void chooseScale(const CWrapperSettings& settings, int screenWidth, int screenHeight);
    /// Scales the unscaled size and raises it to the definition's minimum, if there is one. Tells
    /// whether the size has changed. [control]
    bool update(double width, double height, const CObject& project);

    [[nodiscard]] double getScale() const noexcept { return uiScale; }
    /// Pixels.
    [[nodiscard]] int getWidth() const noexcept { return windowWidth; }
    [[nodiscard]] int getHeight() const noexcept { return windowHeight; }

private:
    double uiScale = 1.0;
    int windowWidth = 0;
    int windowHeight = 0;
};

} // namespace tsm
