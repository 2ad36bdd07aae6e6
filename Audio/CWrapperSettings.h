#pragma once

#include <cstdint>

namespace tsm {

/// The user's settings that an instance reads, with the values they have while the user hasn't
/// touched them.
struct CWrapperSettings {
    std::int32_t oversamplingLevel = 1; // "oversampling-level": 0 to 3, the level of a bounce
    bool force2ch = false;              // "force-2ch"
    bool scalesWithScreen = true;       // "ui-scale-usesr": the window follows the screen's size
    double screenScale = 1.0;           // "ui-scale2": on top of the screen's scale
    double plainScale = 1.0;            // "ui-scale": without it

    /// Reads the settings of the engine from the stores. [control]
    void readEngine();
    /// Reads those of the editor. [control]
    void readEditor();
};

} // namespace tsm
