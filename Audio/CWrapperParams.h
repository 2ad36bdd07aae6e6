#pragma once

#include "Audio/CAudioParamCollector.h"
#include "Audio/CProductData.h"

namespace tsm {

/// The parameters through which host and engine influence each other outside of the signal path.
/// Borrowed from the instance's collector; those whose switch is off are null.
struct CWrapperParams : CCheckedObject {
    CAudioParam* hostOversamplingMode = nullptr;
    CAudioParam* hostOffline = nullptr;
    CAudioParam* hostLatencyChange = nullptr;
    CAudioParam* hostTrackName = nullptr;
    CAudioParam* bypassEnable = nullptr;
    CAudioParam* mainWindowSize = nullptr;
    CAudioParam* hostBPM = nullptr;       // with useHostBPM
    CAudioParam* hostRecording = nullptr; // with useHostRecording
    CAudioParam* sidechain = nullptr;     // with useSidechain, as is the next
    CAudioParam* sidechainMute = nullptr;
    CAudioParam* inChannelNames = nullptr; // with useRouting, as are the next four
    CAudioParam* groupNames = nullptr;
    CAudioParam* inRouting = nullptr;
    CAudioParam* grouping = nullptr;
    CAudioParam* outRouting = nullptr;
    CAudioParam* midSidePairs = nullptr; // with useMidSide

    /// Looks the parameters up. The definition describes them later, when the processes are made.
    /// [setup]
    void bind(CAudioParamCollector& collector, const CProductSwitches& switches);

private:
    void bindRouting(CAudioParamCollector& collector, const CProductSwitches& switches);
};

} // namespace tsm
