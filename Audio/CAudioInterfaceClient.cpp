#include "Audio/CAudioInterfaceClient.h"

#include "Audio/CAudioInterfaceVizProcessor.h"

namespace tsm {

void CAudioInterfaceClient::declareClass(CObjectClassInfo& info)
{
    CParamInterfaceClient::declareClass(info);
    info.addEvent("clear-client", &CAudioInterfaceClient::onClearClient);
    info.addEvent("start-viz", &CAudioInterfaceClient::onStartViz);
    info.addEvent("stop-viz", &CAudioInterfaceClient::onStopViz);
    info.addEvent("viz-data", &CAudioInterfaceClient::onVizData);
    info.addEvent("export-slot-names", &CAudioInterfaceClient::onExportSlotNames);
    info.addEvent("update-internal-channel-count",
                  &CAudioInterfaceClient::onUpdateInternalChannelCount);
    info.addEvent("update-group-count", &CAudioInterfaceClient::onUpdateGroupCount);
    info.addEvent("update-io-channel-counts", &CAudioInterfaceClient::onUpdateIoChannelCounts);
    info.addEvent("update-sample-rate", &CAudioInterfaceClient::onUpdateSampleRate);
    info.addEvent("import-channel-labels", &CAudioInterfaceClient::importChannelLabels);
}

CError* CAudioInterfaceClient::init()
{
    TSM_TRY(CParamInterfaceClient::init());
    TSM_TRY(requestInternalChannelCount());
    TSM_TRY(requestGroupCount());
    TSM_TRY(requestIoChannelCounts());
    TSM_TRY(requestSampleRate());
    const CString names = getAttrString("group-names-param");
    std::uint32_t id = 0;
    if (!names.isEmpty())
        TSM_TRY(listenParam(id, names, groupNames));
    return nullptr;
}

void CAudioInterfaceClient::releaseLinks()
{
    while (const auto* entry = vizListeners.first())
        handleError(unlistenViz(entry->key));
    viz = nullptr;
    CParamInterfaceClient::releaseLinks();
}

CString CAudioInterfaceClient::getGroupName(std::int32_t group) const
{
    return groupNames.getValues().text(0, group);
}

// Messages to the base

CError* CAudioInterfaceClient::listenViz(std::uint32_t& listenerId, const CString& processName,
                                         std::int32_t slot)
{
    listenerId = 0;
    std::uint32_t id = 0;
    TSM_TRY(makeId(id, vizCounter, vizListeners));
    TSM_TRY(sendMessage("listen-viz", id, processName, slot));
    vizListeners.add(id);
    listenerId = id;
    return nullptr;
}

CError* CAudioInterfaceClient::unlistenViz(std::uint32_t listenerId)
{
    if (vizListeners.remove(listenerId) && getClientId() != 0)
        TSM_TRY(sendMessage("unlisten-viz", listenerId));
    return nullptr;
}

CError* CAudioInterfaceClient::requestVizData(double rate)
{
    TSM_TRY(sendMessage("request-viz-data", getClientId(), rate));
    return nullptr;
}

CError* CAudioInterfaceClient::requestExportSlotNames()
{
    TSM_TRY(sendMessage("request-export-slot-names", getClientId()));
    return nullptr;
}

CError* CAudioInterfaceClient::requestInternalChannelCount()
{
    TSM_TRY(sendMessage("request-internal-channel-count", getClientId()));
    return nullptr;
}

CError* CAudioInterfaceClient::requestGroupCount()
{
    TSM_TRY(sendMessage("request-group-count", getClientId()));
    return nullptr;
}

CError* CAudioInterfaceClient::requestIoChannelCounts()
{
    TSM_TRY(sendMessage("request-io-channel-counts", getClientId()));
    return nullptr;
}

CError* CAudioInterfaceClient::requestSampleRate()
{
    TSM_TRY(sendMessage("request-sample-rate", getClientId()));
    return nullptr;
}

CError* CAudioInterfaceClient::importChannelLabels()
{
    TSM_TRY(sendMessage("import-channel-labels"));
    return nullptr;
}

// Messages from the base

CError* CAudioInterfaceClient::onClearClient()
{
    if (viz)
        viz->clear();
    return nullptr;
}

CError* CAudioInterfaceClient::onStartViz()
{
    if (viz)
        viz->startViz();
    return nullptr;
}

CError* CAudioInterfaceClient::onStopViz()
{
    if (viz)
        viz->stopViz();
    return nullptr;
}

CError* CAudioInterfaceClient::onVizData()
{
    if (viz)
        TSM_TRY(viz->readVizData(getMessage()));
    return nullptr;
}

CError* CAudioInterfaceClient::onExportSlotNames()
{
    if (viz)
        TSM_TRY(viz->readExportSlotNames(getMessage()));
    return nullptr;
}

CError* CAudioInterfaceClient::onUpdateInternalChannelCount()
{
    TSM_TRY(readFields(getMessage(), intChannelCount));
    TSM_TRY(sendEvent("update-internal-channel-count"));
    return nullptr;
}

CError* CAudioInterfaceClient::onUpdateGroupCount()
{
    TSM_TRY(readFields(getMessage(), groupCount));
    TSM_TRY(sendEvent("update-group-count"));
    return nullptr;
}

CError* CAudioInterfaceClient::onUpdateIoChannelCounts()
{
    std::int32_t in = 0;
    std::int32_t out = 0;
    std::int32_t sidechain = 0;
    TSM_TRY(readFields(getMessage(), in, out, sidechain));
    inChannels = in;
    outChannels = out;
    sidechainChannels = sidechain;
    TSM_TRY(sendEvent("update-io-channel-counts"));
    return nullptr;
}

// Messages of two threads may arrive in the other order.
CError* CAudioInterfaceClient::onUpdateSampleRate()
{
    std::uint32_t number = 0;
    double rate = 0.0;
    TSM_TRY(readFields(getMessage(), number, rate));
    if (number < sampleRateNumber)
        return nullptr;
    sampleRateNumber = number;
    sampleRate = rate;
    TSM_TRY(sendEvent("update-sample-rate"));
    return nullptr;
}

} // namespace tsm
