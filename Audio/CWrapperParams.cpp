#include "Audio/CWrapperParams.h"

namespace tsm {

namespace {

CAudioParam* bindMain(CAudioParamCollector& collector, const char* name)
{
    return &collector.findOrCreate("plugin.modMain." + CString(name));
}

} // namespace

void CWrapperParams::bind(CAudioParamCollector& collector, const CProductSwitches& switches)
{
    hostOversamplingMode = bindMain(collector, "host-oversampling-mode");
    hostOffline = bindMain(collector, "host-offline");
    hostLatencyChange = bindMain(collector, "host-latency-change");
    hostTrackName = bindMain(collector, "host-track-name");
    bypassEnable = bindMain(collector, "bypass-enable");
    mainWindowSize = bindMain(collector, "main-window-size");
    if (switches.useHostBPM)
        hostBPM = bindMain(collector, "host-bpm");
    if (switches.useHostRecording)
        hostRecording = bindMain(collector, "host-rec");
    if (switches.useSidechain) {
        sidechain = bindMain(collector, "io-params.sidechain");
        sidechainMute = bindMain(collector, "io-params.sidechain-mute");
    }
    if (switches.useRouting)
        bindRouting(collector, switches);
}

void CWrapperParams::bindRouting(CAudioParamCollector& collector, const CProductSwitches& switches)
{
    inChannelNames = bindMain(collector, "io-params.in-channel-names");
    groupNames = bindMain(collector, "io-params.group-names");
    inRouting = bindMain(collector, "io-params.in-routing");
    grouping = bindMain(collector, "io-params.grouping");
    outRouting = bindMain(collector, "io-params.out-routing");
    if (switches.useMidSide)
        midSidePairs = bindMain(collector, "io-params.ms-pairs");
}

} // namespace tsm
