#pragma once

#include "Core/CObject.h"

#include <cstdint>

namespace tsm {

/// What the product's definition says of the product itself: names, codes, limits.
struct CProductData : CCheckedObject {
    CString pluginName;
    CString vendorName;
    std::uint32_t pluginCode = 0; // four characters, the first in the top byte
    std::int32_t versionMajor = 0;
    std::int32_t versionMinor = 0;
    std::int32_t versionBuild = 0;
    std::int32_t intChannelCount = 0; // 1 to 16
    std::int32_t groupCount = 0;      // 1 to 8
    bool hasTail = false;
    double tailSeconds = 0.0;

    /// Reads the attributes of the definition's project object. Errors: an empty name, a count
    /// outside its range, a code or version of another form. [setup]
    [[nodiscard]] CError* read(const CObject& project);

private:
    [[nodiscard]] CError* readNames(const CObject& project);
    [[nodiscard]] CError* readCounts(const CObject& project);
    [[nodiscard]] CError* acquirePluginCode(const CString& text);
    [[nodiscard]] CError* parseVersion(const CString& text);
    void readTail(const CObject& project);
};

/// What the product's definition switches on.
struct CProductSwitches : CCheckedObject {
    bool useSidechain = false;
    bool isVizAlwaysActive = false;
    bool isSymmetricIO = false;
    bool useHostBPM = false;
    bool useHostRecording = false;
    bool useRouting = false;
    bool useMidSide = false; // only with useRouting
    bool useWindowResizing = false;
    std::int32_t autoRtMode = 0; // 1 plus the oversampling mode of real-time work

    /// Reads the attributes of the definition's project object. [setup]
    void read(const CObject& project);
};

} // namespace tsm
