#pragma once

#include "Audio/CAudioInterfaceDataProvider.h"
#include "Other/CParamInterfaceBase.h"

#include <atomic>

namespace tsm {

class CAudioVizCollector;
class CAudioVizSource;

/// The model's end of the parameter interface of a plug-in: also what the host gives, and the
/// host's gestures and the meters. Tag `audio:interface-base`.
class CAudioInterfaceBase : public CParamInterfaceBase {
public:
    /// Finds the collector of the meters' data at the path in `viz-collector`; an empty path is for
    /// instances without meters. Errors: none there, those of the base class.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);
    void releaseLinks() override;

    /// Names who answers questions about the host; borrowed, null for none. [setup]
    void setDataProvider(CAudioInterfaceDataProvider* newProvider) noexcept
    {
        provider = newProvider;
    }

    // What all clients are told. [any] Waits for a queue's lock only, and for the provider.

    /// The host's rate is another one.
    void tellSampleRate();
    /// The host has other channels.
    void tellIoChannelCounts();
    /// The meters' data begin or end.
    void tellStartViz();
    void tellStopViz();
    /// What was measured so far is void.
    void tellClear();

    void dropClient(std::uint32_t clientId) override;
    void restoreClient(std::uint32_t clientId) override;

protected:
    [[nodiscard]] virtual CError* onListenViz();
    [[nodiscard]] virtual CError* onUnlistenViz();
    [[nodiscard]] virtual CError* onRequestVizData();
    [[nodiscard]] virtual CError* onRequestExportSlotNames();
    [[nodiscard]] virtual CError* onRequestInternalChannelCount();
    [[nodiscard]] virtual CError* onRequestGroupCount();
    [[nodiscard]] virtual CError* onRequestIoChannelCounts();
    [[nodiscard]] virtual CError* onRequestSampleRate();
    [[nodiscard]] virtual CError* onImportChannelLabels();

    void beginParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element) override;
    void endParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element) override;

private:
    static constexpr std::int32_t kOwnSlot = -1; // this instance's own meters

    struct CChannelCounts {
        std::int32_t in = 1;
        std::int32_t out = 1;
        std::int32_t sidechain = 0;
        bool operator==(const CChannelCounts&) const = default;
    };

    /// A client's listening to one meter.
    struct CVizRecord : CTsmMemAllocator {
        CAudioVizSource* source = nullptr; // null with the slot of another instance
        CString name;
        std::int32_t slot = kOwnSlot;
    };

    void dropVizListeners(std::uint32_t clientId);
    void endVizListener(const CVizRecord& record) const;
    [[nodiscard]] CChannelCounts readChannelCounts() const;
    void sendIntChannelCount(std::uint32_t clientId);
    void sendGroupCount(std::uint32_t clientId);
    void sendIoChannelCounts(std::uint32_t clientId);
    void sendSampleRate(std::uint32_t clientId);

    CAudioInterfaceDataProvider* provider = nullptr;
    CTarget<CAudioVizCollector*> viz;
    CMap<std::uint32_t, CVizRecord> vizListeners; // under the undo lock
    std::atomic<std::uint32_t> sampleRateNumber = 0;
    std::atomic<bool> isVizActive = false;
};

} // namespace tsm
