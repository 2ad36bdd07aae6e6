#include "Audio/CAudioInterfaceBase.h"

#include "Audio/CAudioVizCollector.h"

#include <algorithm>

namespace tsm {

namespace {

constexpr std::uint32_t kAll = CParamInterfaceBaseConnector::kAllClients;
constexpr double kUnknownRate = 44100.0;
// Frames a second: no window is slower, and no meter has to be faster.
constexpr double kLeastVizRate = 1.0;
constexpr double kMostVizRate = 1000.0;

} // namespace

void CAudioInterfaceBase::declareClass(CObjectClassInfo& info)
{
    CParamInterfaceBase::declareClass(info);
    info.addEvent("listen-viz", &CAudioInterfaceBase::onListenViz);
    info.addEvent("unlisten-viz", &CAudioInterfaceBase::onUnlistenViz);
    info.addEvent("request-viz-data", &CAudioInterfaceBase::onRequestVizData);
    info.addEvent("request-export-slot-names", &CAudioInterfaceBase::onRequestExportSlotNames);
    info.addEvent("request-internal-channel-count",
                  &CAudioInterfaceBase::onRequestInternalChannelCount);
    info.addEvent("request-group-count", &CAudioInterfaceBase::onRequestGroupCount);
    info.addEvent("request-io-channel-counts", &CAudioInterfaceBase::onRequestIoChannelCounts);
    info.addEvent("request-sample-rate", &CAudioInterfaceBase::onRequestSampleRate);
    info.addEvent("import-channel-labels", &CAudioInterfaceBase::onImportChannelLabels);
}

CError* CAudioInterfaceBase::init()
{
    TSM_TRY(CParamInterfaceBase::init());
    if (!getAttrString("viz-collector").isEmpty())
        TSM_TRY(findObjectByAttr(viz, "viz-collector"));
    return nullptr;
}

void CAudioInterfaceBase::releaseLinks()
{
    CParamInterfaceBase::releaseLinks();
    dropVizListeners(kAll);
}

void CAudioInterfaceBase::dropClient(std::uint32_t clientId)
{
    CParamInterfaceBase::dropClient(clientId);
    dropVizListeners(clientId);
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

// Meters

CError* CAudioInterfaceBase::onListenViz()
{
    std::uint32_t id = 0;
    CString name;
    std::int32_t slot = kOwnSlot;
    TSM_TRY(readFields(getMessage(), id, name, slot));
    // A new source makes a parameter, of which others hear behind the lock.
    const CAudioParamHold updates(getCollector());
    const CLockScope hold(getLock());
    if (vizListeners.contains(id))
        return nullptr;
    CVizRecord& record = vizListeners[id];
    record.name = name;
    record.slot = slot;
    if (!viz || slot != kOwnSlot)
        return nullptr;
    record.source = &viz->getSource(name);
    viz->addListener(*record.source);
    return nullptr;
}

CError* CAudioInterfaceBase::onUnlistenViz()
{
    std::uint32_t id = 0;
    TSM_TRY(readFields(getMessage(), id));
    const CLockScope hold(getLock());
    if (const CVizRecord* const record = vizListeners.find(id)) {
        endVizListener(*record);
        vizListeners.remove(id);
    }
    return nullptr;
}

// Those of one client, or of all.
void CAudioInterfaceBase::dropVizListeners(std::uint32_t clientId)
{
    const CLockScope hold(getLock());
    for (auto* entry = vizListeners.first(); entry;) {
        auto* const next = vizListeners.next(entry);
        if (clientId == kAll || CParamInterfaceBaseConnector::clientOf(entry->key) == clientId) {
            endVizListener(entry->value);
            vizListeners.removeNode(entry);
        }
        entry = next;
    }
}

void CAudioInterfaceBase::endVizListener(const CVizRecord& record) const
{
    if (record.source)
        viz->removeListener(*record.source);
}

CError* CAudioInterfaceBase::onRequestVizData()
{
    std::uint32_t clientId = 0;
    double rate = 0.0;
    TSM_TRY(readFields(getMessage(), clientId, rate));
    if (!viz)
        return nullptr;
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, "viz-data"));
    if (rate > 0.0)
        rate = std::clamp(rate, kLeastVizRate, kMostVizRate);
    TSM_TRY(viz->writeStream(message, rate));
    send(clientId, message);
    return nullptr;
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
