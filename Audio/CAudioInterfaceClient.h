#pragma once

#include "Other/CParamInterfaceClient.h"
#include "Other/CParamMirror.h"

namespace tsm {

class CAudioInterfaceVizProcessor;

/// The window's end of the parameter interface of a plug-in: also what the host gives and the
/// meters say. Tag `audio:interface-client`.
///
/// Events: `update-internal-channel-count`, `update-group-count`, `update-io-channel-counts`,
/// `update-sample-rate`. It takes an event `import-channel-labels`.
class CAudioInterfaceClient : public CParamInterfaceClient {
public:
    /// Asks for all that it shows, and listens to the parameter in `group-names-param`, unless that
    /// is empty. Errors: no connector, no base behind it.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);
    /// Ends the listening to meters too.
    void releaseLinks() override;

    /// Names who takes what the meters send; borrowed, null for none.
    void setVizProcessor(CAudioInterfaceVizProcessor* processor) noexcept { viz = processor; }

    /// Listens to the meter of a process by its full name, `slot` -1 for this instance's own.
    [[nodiscard]] CError* listenViz(std::uint32_t& listenerId, const CString& processName,
                                    std::int32_t slot = -1);
    [[nodiscard]] CError* unlistenViz(std::uint32_t listenerId);
    /// Asks for what the meters have measured since the last time; from now on they measure at that
    /// rate, in frames a second.
    [[nodiscard]] CError* requestVizData(double rate);
    [[nodiscard]] CError* requestExportSlotNames();
    [[nodiscard]] CError* requestInternalChannelCount();
    [[nodiscard]] CError* requestGroupCount();
    [[nodiscard]] CError* requestIoChannelCounts();
    [[nodiscard]] CError* requestSampleRate();
    /// Has the routing take over the names of the host's channels.
    [[nodiscard]] CError* importChannelLabels();

    // What has arrived

    [[nodiscard]] std::int32_t getIntChannelCount() const noexcept { return intChannelCount; }
    [[nodiscard]] std::int32_t getGroupCount() const noexcept { return groupCount; }
    [[nodiscard]] std::int32_t getInChannels() const noexcept { return inChannels; }
    [[nodiscard]] std::int32_t getOutChannels() const noexcept { return outChannels; }
    [[nodiscard]] std::int32_t getSidechainChannels() const noexcept { return sidechainChannels; }
    /// In Hz.
    [[nodiscard]] double getSampleRate() const noexcept { return sampleRate; }
    /// The name of a group; empty for one that has none.
    [[nodiscard]] CString getGroupName(std::int32_t group) const;

private:
    using CGroupNamesParamListener = CParamMirror;

    [[nodiscard]] CError* onClearClient();
    [[nodiscard]] CError* onStartViz();
    [[nodiscard]] CError* onStopViz();
    [[nodiscard]] CError* onVizData();
    [[nodiscard]] CError* onExportSlotNames();
    [[nodiscard]] CError* onUpdateInternalChannelCount();
    [[nodiscard]] CError* onUpdateGroupCount();
    [[nodiscard]] CError* onUpdateIoChannelCounts();
    [[nodiscard]] CError* onUpdateSampleRate();

    std::int32_t intChannelCount = 2;
    std::int32_t groupCount = 2;
    std::int32_t inChannels = 2;
    std::int32_t outChannels = 2;
    std::int32_t sidechainChannels = 0;
    double sampleRate = 44100.0;
    std::uint32_t sampleRateNumber = 0;
    CAudioInterfaceVizProcessor* viz = nullptr;
    CSet<std::uint32_t> vizListeners;
    std::uint32_t vizCounter = 0;
    CGroupNamesParamListener groupNames{*this};
};

} // namespace tsm
