#include "Audio/CEditorSize.h"

#include "Core/CRounding.h"

#include <algorithm>

namespace tsm {

void CEditorSize::chooseScale(const CWrapperSettings& settings, int screenWidth, int screenHeight)
{
    constexpr double kUnityScreen = 1080.0;
    constexpr double kStepsPerUnit = 20.0;
    constexpr double kSmallest = 0.8;
    double scale = settings.scalesWithScreen ? settings.screenScale : settings.plainScale;
    const int side = std::min(screenWidth, screenHeight);
    if (settings.scalesWithScreen && side != 0)
        scale *= side / kUnityScreen;
    uiScale = std::max(roundHalfAway(scale * kStepsPerUnit) / kStepsPerUnit, kSmallest);
}

bool CEditorSize::update(double width, double height, const CObject& project)
{
    int newWidth = roundToInt(width * uiScale);
    int newHeight = roundToInt(height * uiScale);
    const int leastWidth = project.getAttrInt("min-window-width");
    const int leastHeight = project.getAttrInt("min-window-height");
    if (leastWidth >= 1 && leastHeight >= 1) {
        newWidth = std::max(newWidth, roundToInt(leastWidth * uiScale));
        newHeight = std::max(newHeight, roundToInt(leastHeight * uiScale));
    }
    const bool isChanged = newWidth != windowWidth || newHeight != windowHeight;
    windowWidth = newWidth;
    windowHeight = newHeight;
    return isChanged;
}

} // namespace tsm
