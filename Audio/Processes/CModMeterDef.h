#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModMeter`. Tag `audio:modMeter`.
class CModMeterDef : public CAudioProcessDefBase {
public:
    /// Errors: the base's. A frame rate that isn't a number above 0 counts as none. [setup]
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CAudioProcessBase* createInstance() const override;

    /// Records a second; 0.0 to follow the windows.
    [[nodiscard]] double getFps() const noexcept { return fps; }
    /// The level of port 0 over that of port 1.
    [[nodiscard]] bool getIsDiff() const noexcept { return isDiff; }
    /// Follows the smallest level, as a display of gain reduction wants it.
    [[nodiscard]] bool getIsCompression() const noexcept { return isCompression; }
    /// Sends reciprocals.
    [[nodiscard]] bool getIsInverted() const noexcept { return isInverted; }

private:
    double fps = 0.0;
    bool isDiff = false;
    bool isCompression = false;
    bool isInverted = false;
};

} // namespace tsm
