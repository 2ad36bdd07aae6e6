#pragma once

#include "Audio/CAudioExtParamHostBridge.h"
#include "Audio/CAudioInterfaceDataProvider.h"
#include "Audio/CAudioRoutingInfoProvider.h"
#include "Audio/CEditorSize.h"
#include "Audio/CHostChannels.h"
#include "Audio/CHostFormat.h"
#include "Audio/CHostValues.h"
#include "Audio/CParamEventQueue.h"
#include "Audio/CProductData.h"
#include "Audio/CWrapperGraph.h"
#include "Audio/CWrapperParams.h"
#include "Audio/CWrapperSettings.h"

#include <atomic>

namespace tsm {

class CAudioCCTable;
class CAudioEnv;
class CAudioExtParamList;
class CAudioInterfaceBase;
class CAudioParamRegistry;
class CAudioVizCollector;
class CInputStream;
class COutputStream;
class CParamInterfaceBaseConnector;

/// One instance of the product between a plug-in format and the engine.
///
/// It builds the instance's object tree and live graph from the shared definition, cuts the host's
/// blocks into sub-blocks, turns host samples into engine blocks and back, and keeps what every
/// format needs: rate, channels, latency, tail, offline mode, editor size. It knows no plug-in API:
/// a format's own class derives from it. Life: init(), format setters, afterInit(),
/// startProcessing(), processBlock() for each block, stopProcessing().
///
/// While the engine runs, processBlock() belongs to one thread; the environment's lock guards what
/// other threads hand over.
class CAudioWrapper : public CAudioExtParamHostBridge,
                      public CAudioInterfaceDataProvider,
                      public CAudioRoutingInfoProvider {
public:
    CAudioWrapper();
    /// Ends the graph, then the instance's tree; behind endInterface(). [control]
    ~CAudioWrapper() override;
    CAudioWrapper(const CAudioWrapper&) = delete;
    CAudioWrapper& operator=(const CAudioWrapper&) = delete;

    /// Builds the instance from the shared tree. Errors: no application, those of the definition,
    /// an object or parameter that is missing; the instance is of no use then. [control]
    [[nodiscard]] virtual CError* init();
    /// The window has got another size in pixels. [control]
    virtual void onWindowSizeChange(int width, int height);
    /// The latency has changed: raises the hint that asks the user to restart playback. [audio]
    virtual void setLatencyChanged();
    /// A queued event of another kind than a parameter change is due. [audio]
    virtual void onEvent(const CParamEvent& event);
    /// A queued parameter change is due; what the index means is the format's. [audio]
    virtual void onParamEvent(const CParamEvent& event);

    /// Shuts windows and other clients out for good: what they ask of the host ends here. Each
    /// derived class that can be told of gestures calls it first as it ends. Clients may be at work
    /// on other threads meanwhile. [control]
    void endInterface();
    /// Once, behind init(): applies what an instance starts with, and makes one pass through the
    /// graph, so that the latency is known. Edits reach the host from here on. [control]
    void afterInit();
    /// Takes the window's size from the settings and the parameter. [control]
    void loadWindowSize();

    /// The host's rate in Hz, above 0. [setup]
    void setSampleRate(double rate);
    /// The host's inputs: those of the main bus, then those of the side-chain. [setup|audio] A lock
    /// only for other ones than before.
    void setChannelFormat(const CHostLayout& main, const CHostLayout& sidechain);
    /// The host's outputs. [setup|audio] The same.
    void setOutputFormat(const CHostLayout& output);
    /// The side-chain's buffers for the next block; borrowed. [audio]
    void setSidechainBuffers(const void* const* buffers) noexcept { sidechainBuffers = buffers; }
    /// The names of the host's channels, for the routing update that follows. [control]
    void setChannelNames(CHostChannelNames&& names);
    /// As the provider's, and with `force` a format becomes known. [control]
    void updateRouting(bool force, CAudioParamContext* context);

    /// Begins or ends processing; each runs one pass through the graph that applies all pending
    /// changes. Calls without an effect do nothing. [control] Never at the same time as
    /// processBlock().
    void startProcessing();
    void stopProcessing();
    /// Has an engine that stands still take all pending changes at once, so that its latency is
    /// known and nothing of the former sound fades into the next start. [control]
    void settle();
    /// The host bounces, or plays. [control | audio]
    void setOffline(bool isOffline);
    /// The host's tempo; without effect in a product that doesn't use it. [control | audio]
    void setHostBPM(double bpm);
    /// The name of the host's track. [control]
    void setHostTrackName(const CString& name);

    /// Makes room for that many events a block. [setup]
    void reserveEvents(int count) { events.reserve(count); }
    /// Queues a parameter change for the next block, `offset` samples behind its beginning; beyond
    /// its end the change is lost. [audio]
    void queueParamEvent(std::uint32_t offset, std::int32_t index, double value) noexcept;
    /// Applies what is queued for the next block's first sample at once, for a call of the host
    /// that brings no samples: a state that it loads or saves behind it comes later. [audio]
    void applyEvents();
    /// Processes `count` samples; the buffers have the layouts that were set. A block that would
    /// not be finite comes out as silence, and the graph starts anew. [audio] No allocation in the
    /// steady state.
    void processBlock(const void* const* inputs, void* const* outputs, int count);

    /// The graph's delay in samples; the answer takes back the hint of setLatencyChanged(). [any]
    [[nodiscard]] int queryLatency();
    /// Writes the instance's complete state: one compressed block with a preset. Errors: the
    /// stream's. [control], also while sound runs
    [[nodiscard]] CError* saveState(COutputStream& stream);
    /// Applies a state. Errors: damaged data and the state of another product, with nothing
    /// changed; damaged values of a parameter, with those before it applied. [control], likewise
    [[nodiscard]] CError* loadState(CInputStream& stream);

    /// Samples for which the sound goes on behind its input. [any]
    [[nodiscard]] int getTailSamples();

    /// The root of the instance's tree, for those who attach clients to it.
    [[nodiscard]] CObject& getRoot() const noexcept { return *root; }
    [[nodiscard]] CAudioParamCollector& getParamCollector() const noexcept
    {
        return *paramCollector;
    }
    [[nodiscard]] CAudioParamRegistry& getParamRegistry() const noexcept { return *paramRegistry; }
    [[nodiscard]] CAudioVizCollector& getVizCollector() const noexcept { return *vizCollector; }
    [[nodiscard]] CAudioExtParamList& getExtParamList() const noexcept { return *extParamList; }
    [[nodiscard]] CAudioEnv& getEnvironment() const noexcept { return *audioEnv; }
    [[nodiscard]] const CProductSwitches& getSwitches() const noexcept { return switches; }
    [[nodiscard]] const CEditorSize& getEditorSize() const noexcept { return editorSize; }
    /// The last oversampling mode that was asked of the engine. [control]
    [[nodiscard]] int getHostOversamplingMode() const noexcept
    {
        return hostValues.getOversamplingMode();
    }

    [[nodiscard]] std::int32_t getIntChannelCount() override;
    [[nodiscard]] std::int32_t getGroupCount() override;
    [[nodiscard]] std::int32_t getInChannelCount() override;
    [[nodiscard]] std::int32_t getOutChannelCount() override;
    [[nodiscard]] std::int32_t getSidechainChannelCount() override;
    [[nodiscard]] double getSampleRate() override;
    void beginParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element) override;
    void endParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element) override;
    void importChannelLabels(const COwnedArray<CString>& names) override;
    void updateRouting(CAudioParamContext* context) override;

protected:
    /// Gives the graph the host's format, if that has changed, and tells whether it has. [audio]
    bool applyFormat();
    /// True when edits may go to the host. [any]
    [[nodiscard]] bool getIsReady() const noexcept { return isReady; }

private:
    class CHostProgramListener;
    class CWinSizeParamListener;
    using CExtParamIndices = CMap<std::int32_t, std::int32_t>; // (element << 8 | group) to index

    [[nodiscard]] CError* createTree();
    [[nodiscard]] CError* readProject();
    [[nodiscard]] CError* resolveObjects();
    void bindHost();
    void watchWindowSize();
    void onMainWindowSize();
    bool updateWindowSize();
    [[nodiscard]] int findExtParam(CAudioParam& param, std::int32_t group,
                                   std::int32_t element) const;

    [[nodiscard]] bool setRunning(bool run);
    void primeGraph();
    [[nodiscard]] bool dispatchEvents(int position, int& length);
    void takeChanges(bool isBlockStart, int length);
    void processSubBlock(const void* const* inputs, const CHostOutput& output, int done,
                         int length);
    void copyIn(const void* const* inputs, int done, int length);
    void advanceTime(int length);

    CTreePtr<CObject> root;
    CObject* project = nullptr;   // shared
    CObject* plugin = nullptr;    // of this instance
    CObject* audioDefs = nullptr; // shared
    CAudioEnv* audioEnv = nullptr;
    CAudioParamCollector* paramCollector = nullptr;
    CAudioVizCollector* vizCollector = nullptr;
    CAudioInterfaceBase* interfaceBase = nullptr;
    CParamInterfaceBaseConnector* interfaceConnector = nullptr;
    CAudioExtParamList* extParamList = nullptr;
    CAudioCCTable* ccTable = nullptr;
    CAudioParamRegistry* paramRegistry = nullptr;
    CProductData product;
    CProductSwitches switches;
    CWrapperSettings settings;
    CWrapperParams params;
    CHostValues hostValues{params};
    CHostFormat hostFormat;
    CHostChannels hostChannels{params};
    CMap<CAudioParam*, CExtParamIndices> extParamIndices;
    CWrapperGraph graph;

    double blockRate = 44100.0; // of the environment, taken once a block; [audio]
    const void* const* sidechainBuffers = nullptr;
    CParamEventQueue events;
    std::atomic<bool> isInside = false; // the audio entry or a priming pass runs
    std::atomic<bool> isReady = false;  // edits may go to the host
    std::atomic<bool> isLatencyChanged = false;
    CEditorSize editorSize;
    CPtr<CWinSizeParamListener> windowSizeListener;
    CPtr<CHostProgramListener> programListener;
};

} // namespace tsm
