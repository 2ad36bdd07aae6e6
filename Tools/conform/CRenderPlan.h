#pragma once

#include "Tools/conform/CLivePlugin.h"

namespace tsm {

/// A change of a parameter at a frame of the sound.
struct CRenderPoint {
    std::size_t frame = 0;
    Steinberg::Vst::ParamID id = 0;
    double value = 0.0;
};

/// How a sound goes through a new instance; two that differ in the blocks alone must sound alike.
struct CRenderPlan {
    CVstSetUp setUp{.rate = 48000.0, .maxBlock = 512, .channelCount = 0, .isDouble = false};
    bool isInPlace = false;
    std::vector<int> sizes{512};     // of blocks, again and again
    std::vector<CParamValue> values; // before the first block
    std::vector<CRenderPoint> points;
    std::size_t frameCount = 8192;
    double level = 0.25; // peak of the noise that is the input
    unsigned seed = 1;

    /// Errors: those of the instance.
    [[nodiscard]] CError* render(const CPlugin& plugin, CFindings& findings, CChannels& out) const;
};

} // namespace tsm
