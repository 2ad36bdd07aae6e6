#include "Audio/CAudioInterfaceBase.h"

namespace tsm {

namespace {

constexpr std::uint32_t kAll = CParamInterfaceBaseConnector::kAllClients;
constexpr double kUnknownRate = 44100.0;

} // namespace

void CAudioInterfaceBase::declareClass(CObjectClassInfo& info)
{
    CParamInterfaceBase::declareClass(info);
    info.addEvent("request-export-slot-names", &CAudioInterfaceBase::onRequestExportSlotNames);
    info.addEvent("request-internal-channel-count",
                  &CAudioInterfaceBase::onRequestInternalChannelCount);
    info.addEvent("request-group-count", &CAudioInterfaceBase::onRequestGroupCount);
    info.addEvent("request-io-channel-counts", &CAudioInterfaceBase::onRequestIoChannelCounts);
    info.addEvent("request-sample-rate", &CAudioInterfaceBase::onRequestSampleRate);
    info.addEvent("import-channel-labels", &CAudioInterfaceBase::onImportChannelLabels);
}

void CAudioInterfaceBase::restoreClient(std::uint32_t clientId)
{
    CParamInterfaceBase::restoreClient(clientId);
    sendIntChannelCount(clientId);
    sendGroupCount(clientId);
    sendIoChannelCounts(clientId);
    sendSampleRate(clientId);
    sendMessage(clientId, isVizActive ? "start-viz" : "stop-viz");
    sendMessage(clientId, "clear-client");
}

void CAudioInterfaceBase::beginParamEdit(CAudioParam& param, std::int32_t group,
                                         std::int32_t element)
{
    if (provider)
        provider->beginParamEdit(param, group, element);
}

void CAudioInterfaceBase::endParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element)
{
    if (provider)
        provider->endParamEdit(param, group, element);
}

void CAudioInterfaceBase::tellSampleRate()
{
    sendSampleRate(kAll);
}

void CAudioInterfaceBase::tellIoChannelCounts()
{
    sendIoChannelCounts(kAll);
}

void CAudioInterfaceBase::tellStartViz()
{
    isVizActive = true;
    sendMessage(kAll, "start-viz");
}

void CAudioInterfaceBase::tellStopViz()
{
    isVizActive = false;
    sendMessage(kAll, "stop-viz");
}

void CAudioInterfaceBase::tellClear()
{
    sendMessage(kAll, "clear-client");
}

// Requests

// No slots here by which instances would show each other's meters.
CError* CAudioInterfaceBase::onRequestExportSlotNames()
{
    constexpr std::uint32_t kSlotCount = 0;
    std::uint32_t clientId = 0;
    TSM_TRY(readFields(getMessage(), clientId));
    sendMessage(clientId, "export-slot-names", kSlotCount);
    return nullptr;
}

CError* CAudioInterfaceBase::onRequestInternalChannelCount()
{
    std::uint32_t clientId = 0;
    TSM_TRY(readFields(getMessage(), clientId));
    sendIntChannelCount(clientId);
    return nullptr;
}

CError* CAudioInterfaceBase::onRequestGroupCount()
{
    std::uint32_t clientId = 0;
    TSM_TRY(readFields(getMessage(), clientId));
    sendGroupCount(clientId);
    return nullptr;
}

CError* CAudioInterfaceBase::onRequestIoChannelCounts()
{
    std::uint32_t clientId = 0;
    TSM_TRY(readFields(getMessage(), clientId));
    sendIoChannelCounts(clientId);
    return nullptr;
}

CError* CAudioInterfaceBase::onRequestSampleRate()
{
    std::uint32_t clientId = 0;
    TSM_TRY(readFields(getMessage(), clientId));
    sendSampleRate(clientId);
    return nullptr;
}

CError* CAudioInterfaceBase::onImportChannelLabels()
{
    if (provider)
        provider->importChannelLabels({});
    return nullptr;
}

void CAudioInterfaceBase::sendIntChannelCount(std::uint32_t clientId)
{
    sendMessage(clientId, "update-internal-channel-count",
                provider ? provider->getIntChannelCount() : 1);
}

void CAudioInterfaceBase::sendGroupCount(std::uint32_t clientId)
{
    sendMessage(clientId, "update-group-count", provider ? provider->getGroupCount() : 1);
}

CAudioInterfaceBase::CChannelCounts CAudioInterfaceBase::readChannelCounts() const
{
    if (!provider)
        return {};
    return {provider->getInChannelCount(), provider->getOutChannelCount(),
            provider->getSidechainChannelCount()};
}

// Another thread may send newer counts between the reading and the sending; then they go out once
// more, so that the last ones in each queue are those that hold.
void CAudioInterfaceBase::sendIoChannelCounts(std::uint32_t clientId)
{
    CChannelCounts present = readChannelCounts();
    CChannelCounts sent;
    do {
        sent = present;
        sendMessage(clientId, "update-io-channel-counts", sent.in, sent.out, sent.sidechain);
        present = readChannelCounts();
    } while (!(sent == present));
}

// The number is taken before the rate is read: the highest number has the last rate.
void CAudioInterfaceBase::sendSampleRate(std::uint32_t clientId)
{
    const std::uint32_t number = ++sampleRateNumber;
    sendMessage(clientId, "update-sample-rate", number,
                provider ? provider->getSampleRate() : kUnknownRate);
}

} // namespace tsm
