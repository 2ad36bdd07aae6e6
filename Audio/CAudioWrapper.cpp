#include "Audio/CAudioWrapper.h"

#include "Audio/CAudioCCTable.h"
#include "Audio/CAudioEnv.h"
#include "Audio/CAudioExtParamList.h"
#include "Audio/CAudioInterfaceBase.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamRegistry.h"
#include "Audio/CAudioVizCollector.h"
#include "Audio/CExclusiveScope.h"
#include "Audio/CParamListener.h"
#include "Audio/CPresetDataIds.h"
#include "Audio/CRegistryListener.h"
#include "Core/CApplication.h"
#include "Core/CLog.h"
#include "Core/CMemoryReader.h"
#include "Core/CRounding.h"
#include "Core/CWorkerThreadPool.h"
#include "Core/CWriteSeqBuffer.h"
#include "Other/CParamInterfaceBaseConnector.h"
#include "Platform/CFloatControl.h"
#include "Platform/CThreadId.h"

#include <algorithm>
#include <cassert>
#include <chrono>

namespace tsm {

namespace {

double secondsNow()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

/// Has nobody told of changes on this thread: hosts and listeners may keep it up.
class CRealtimeScope {
public:
    explicit CRealtimeScope(CParamUpdateQueue& queue) noexcept : updates(queue)
    {
        updates.setRealtimeThread(currentThreadId());
    }
    ~CRealtimeScope() { updates.setRealtimeThread(0); }
    CRealtimeScope(const CRealtimeScope&) = delete;
    CRealtimeScope& operator=(const CRealtimeScope&) = delete;

private:
    CParamUpdateQueue& updates;
};

void silence(const CHostOutput& output, int first, int length)
{
    for (int channel = 0; channel < output.getChannelCount(); ++channel)
        output.silence(channel, first, length);
}

} // namespace

/// Hears of the window size that the user wants.
class CAudioWrapper::CWinSizeParamListener : public CParamListener {
public:
    explicit CWinSizeParamListener(CAudioWrapper& wrapper) : owner(wrapper) {}
    ~CWinSizeParamListener() override { attach(nullptr); }
    void onParamChanged(const void*, CAudioParam&, const CAudioParamChange&) override
    {
        owner.onMainWindowSize();
    }

private:
    CAudioWrapper& owner;
};

/// Hears of another current program, or another name of it.
class CAudioWrapper::CHostProgramListener : public CProgramChangeListener {
public:
    explicit CHostProgramListener(CAudioWrapper& wrapper) : owner(wrapper)
    {
        listen(*owner.paramRegistry);
    }
    ~CHostProgramListener() override { attach(nullptr); }
    void onProgramChange(const void* sender) override
    {
        // The host knows of the programs that it chose itself.
        if (sender != &owner && owner.isReady)
            owner.onProgramChange();
    }

private:
    CAudioWrapper& owner;
};

CAudioWrapper::CAudioWrapper() = default;

CAudioWrapper::~CAudioWrapper()
{
    assert(!isInside);
    endInterface();
    if (interfaceBase)
        interfaceBase->setDataProvider(nullptr);
    programListener.reset();
    windowSizeListener.reset();
    graph.destroy();
    root.reset();
    // No sleeping thread outlives the last instance that could need one.
    CWorkerThreadPool::clearIdleThreads();
}

void CAudioWrapper::endInterface()
{
    if (interfaceConnector)
        interfaceConnector->close();
}

CError* CAudioWrapper::init()
{
    const double begin = secondsNow();
    TSM_TRY(createTree());
    TSM_TRY(readProject());
    TSM_TRY(resolveObjects());
    hostFormat.setEnv(*audioEnv);
    params.bind(*paramCollector, switches);
    TSM_TRY(graph.create(*plugin, *audioEnv, *paramCollector, *vizCollector));
    loadWindowSize();
    if (switches.useWindowResizing)
        watchWindowSize();
    bindHost();
    settings.readEngine();
    setOffline(false);
    const double end = secondsNow();
    logFormat("CAudioWrapper init time: %.4f s @ %.4f s", end - begin, end);
    return nullptr;
}

CError* CAudioWrapper::createTree()
{
    CApplication* application = CApplication::get();
    if (!application)
        TSM_FAIL("@tsmstr_CAudioWrapper_init_NoApp No application object created.");
    TSM_TRY(application->initRootObject(root, CString()));
    TSM_TRY(root->findObjectChecked(audioDefs, "shared::audio"));
    CObject* made = nullptr;
    TSM_TRY(root->createChild(made, audioDefs->getAttrString("plugin-tag"), "plugin", true));
    TSM_TRY(root->findObjectChecked(plugin, "plugin"));
    return root->findObjectChecked(project, "shared::project");
}

CError* CAudioWrapper::readProject()
{
    TSM_TRY(product.read(*project));
    switches.read(*project);
    return nullptr;
}

CError* CAudioWrapper::resolveObjects()
{
    TSM_TRY(root->findObjectChecked(audioEnv, "plugin.audio-env"));
    TSM_TRY(root->findObjectChecked(paramCollector, "plugin.param-collector"));
    // The document should have said so; the queue can't do without.
    paramCollector->setEnv(audioEnv);
    TSM_TRY(root->findObjectChecked(vizCollector, "plugin.viz-collector"));
    TSM_TRY(root->findObjectChecked(interfaceBase, "plugin.interface-base"));
    TSM_TRY(root->findObjectChecked(interfaceConnector, "plugin.interface-base-connector"));
    TSM_TRY(root->findObjectChecked(extParamList, "plugin.ext-param-list"));
    TSM_TRY(root->findObjectChecked(ccTable, "plugin.cctable"));
    return root->findObjectChecked(paramRegistry, "plugin.param-registry");
}

void CAudioWrapper::bindHost()
{
    paramRegistry->setRoutingProvider(this);
    for (int i = 0; i < extParamList->getCount(); ++i) {
        CAudioExtParam& param = (*extParamList)[i];
        param.setHostBridge(this, i);
        extParamIndices[&param.getParam()][param.getElement() << 8 | param.getGroup()] = i;
    }
}

void CAudioWrapper::afterInit()
{
    interfaceBase->setDataProvider(this);
    programListener.reset(new CHostProgramListener(*this));
    paramRegistry->applyInitial();
    settle();
    isReady = true;
}

void CAudioWrapper::onWindowSizeChange(int, int) {}

void CAudioWrapper::onEvent(const CParamEvent&) {}

void CAudioWrapper::onParamEvent(const CParamEvent&) {}

// The window's size

void CAudioWrapper::loadWindowSize()
{
    // Without a display there is no monitor to measure.
    constexpr int kNoMonitor = 0;
    settings.readEditor();
    editorSize.chooseScale(settings, kNoMonitor, kNoMonitor);
    updateWindowSize();
}

void CAudioWrapper::watchWindowSize()
{
    windowSizeListener.reset(new CWinSizeParamListener(*this));
    params.mainWindowSize->addListener(*windowSizeListener);
}

bool CAudioWrapper::updateWindowSize()
{
    constexpr double kUnknownWidth = 400.0;
    constexpr double kUnknownHeight = 300.0;
    return editorSize.update(params.mainWindowSize->value(0, 0, kUnknownWidth),
                             params.mainWindowSize->value(0, 1, kUnknownHeight), *project);
}

void CAudioWrapper::onMainWindowSize()
{
    if (updateWindowSize() && isReady)
        onWindowSizeChange(editorSize.getWidth(), editorSize.getHeight());
}

// The host's format and state

void CAudioWrapper::setSampleRate(double rate)
{
    if (hostFormat.setSampleRate(rate))
        interfaceBase->tellSampleRate();
}

void CAudioWrapper::setChannelFormat(const CHostLayout& main, const CHostLayout& sidechain)
{
    hostFormat.setInputs(main, sidechain);
}

void CAudioWrapper::setOutputFormat(const CHostLayout& output)
{
    hostFormat.setOutput(output);
}

void CAudioWrapper::setChannelNames(CHostChannelNames&& names)
{
    hostChannels.setNames(std::move(names));
}

void CAudioWrapper::updateRouting(bool force, CAudioParamContext* context)
{
    // Listeners hear of it behind the names' lock, which they may want.
    const CAudioParamHold updates(*paramCollector);
    hostChannels.updateRouting(force, product.intChannelCount, this, context);
}

void CAudioWrapper::updateRouting(CAudioParamContext* context)
{
    updateRouting(false, context);
}

void CAudioWrapper::setOffline(bool isOffline)
{
    // The rate counts offline only: no lock in a block that is heard.
    const double rate = isOffline ? getSampleRate() : 0.0;
    hostValues.setOffline(isOffline, rate, settings.oversamplingLevel, switches.autoRtMode);
}

void CAudioWrapper::setHostBPM(double bpm)
{
    hostValues.setBPM(bpm);
}

void CAudioWrapper::setHostTrackName(const CString& name)
{
    hostValues.setTrackName(name);
}

void CAudioWrapper::setLatencyChanged()
{
    isLatencyChanged = true;
    params.hostLatencyChange->setValue(0, 0, 1.0, this);
}

int CAudioWrapper::queryLatency()
{
    if (isLatencyChanged.exchange(false))
        params.hostLatencyChange->setValue(0, 0, 0.0, this);
    const CLockScope lock(audioEnv->lock);
    return audioEnv->latency;
}

int CAudioWrapper::getTailSamples()
{
    return roundToInt(product.tailSeconds * getSampleRate());
}

std::int32_t CAudioWrapper::getIntChannelCount()
{
    return product.intChannelCount;
}

std::int32_t CAudioWrapper::getGroupCount()
{
    return product.groupCount;
}

std::int32_t CAudioWrapper::getInChannelCount()
{
    return hostFormat.getMainCount();
}

std::int32_t CAudioWrapper::getOutChannelCount()
{
    return hostFormat.getOutputCount();
}

std::int32_t CAudioWrapper::getSidechainChannelCount()
{
    return hostFormat.getSidechainCount();
}

double CAudioWrapper::getSampleRate()
{
    return hostFormat.getSampleRate();
}

// Edits

int CAudioWrapper::findExtParam(CAudioParam& param, std::int32_t group, std::int32_t element) const
{
    const CExtParamIndices* indices = extParamIndices.find(&param);
    return indices ? indices->get(element << 8 | group, -1) : -1;
}

void CAudioWrapper::beginParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element)
{
    const int index = findExtParam(param, group, element);
    if (isReady && index >= 0)
        beginEdit(index);
}

void CAudioWrapper::endParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element)
{
    const int index = findExtParam(param, group, element);
    if (isReady && index >= 0)
        endEdit(index);
}

void CAudioWrapper::importChannelLabels(const COwnedArray<CString>& names)
{
    hostChannels.importLabels(names, interfaceBase, this);
}

// State

CError* CAudioWrapper::saveState(COutputStream& stream)
{
    CWriteSeqBuffer buffer;
    TSM_TRY(paramRegistry->acquirePreset(false, -1, -1, buffer));
    CByteBuffer preset;
    buffer.takeData(preset);
    return stream.writeCompressedData(preset, kPresetDataId);
}

CError* CAudioWrapper::loadState(CInputStream& stream)
{
    CByteBuffer preset;
    TSM_TRY(stream.readCompressedData(preset, kPresetDataId));
    CMemoryReader reader(preset);
    return paramRegistry->activatePreset(reader, false, -1, true);
}

// Processing

bool CAudioWrapper::setRunning(bool run)
{
    const CLockScope lock(audioEnv->lock);
    const bool isChange = audioEnv->isProcessing != run;
    audioEnv->isProcessing = run;
    return isChange;
}

void CAudioWrapper::startProcessing()
{
    const CFloatControl floatControl;
    if (!setRunning(true))
        return;
    interfaceBase->tellStartViz();
    if (!switches.isVizAlwaysActive)
        interfaceBase->tellClear();
    primeGraph();
}

void CAudioWrapper::stopProcessing()
{
    const CFloatControl floatControl;
    if (!setRunning(false))
        return;
    primeGraph();
    graph.reset();
    if (!switches.isVizAlwaysActive)
        interfaceBase->tellStopViz();
    vizCollector->reset();
    if (switches.isVizAlwaysActive)
        interfaceBase->tellClear();
}

void CAudioWrapper::settle()
{
    bool isRunning = false;
    {
        const CLockScope lock(audioEnv->lock);
        isRunning = audioEnv->isProcessing;
    }
    if (isRunning)
        return;
    startProcessing();
    stopProcessing();
}

void CAudioWrapper::queueParamEvent(std::uint32_t offset, std::int32_t index, double value) noexcept
{
    events.add({offset, CParamEvent::kParamChange, index, value});
}

void CAudioWrapper::applyEvents()
{
    const CFloatControl floatControl;
    const CExclusiveScope scope(isInside);
    const CRealtimeScope realtime(paramCollector->getUpdates());
    int length = 1;
    events.rewind();
    [[maybe_unused]] const bool hasEvents = dispatchEvents(0, length);
    events.clear();
}

void CAudioWrapper::primeGraph()
{
    const CExclusiveScope scope(isInside);
    const int formerLatency = audioEnv->latency;
    applyFormat();
    int length = 1;
    events.rewind();
    [[maybe_unused]] const bool hasEvents = dispatchEvents(0, length);
    takeChanges(true, length);
    const int inputCount =
        hostFormat.getMain().channelCount + hostFormat.getSidechain().channelCount;
    for (int channel = 0; channel < inputCount; ++channel)
        *graph.beginInput(channel, length) = 0.0;
    graph.run();
    graph.release();
    advanceTime(length);
    if (audioEnv->latency != formerLatency)
        setLatencyChanged();
    events.clear();
}

void CAudioWrapper::processBlock(const void* const* inputs, void* const* outputs, int count)
{
    assert(count >= 0);
    const CFloatControl floatControl;
    const CExclusiveScope scope(isInside);
    const CRealtimeScope realtime(paramCollector->getUpdates());
    const int formerLatency = audioEnv->latency;
    applyFormat();
    events.rewind();
    const CHostOutput output(outputs, hostFormat.getOutput());
    for (int done = 0; done < count;) {
        int length = std::min(kMaxSubBlock, count - done);
        const bool hasEvents = dispatchEvents(done, length);
        const bool isBlockStart = done == 0;
        if (hasEvents || isBlockStart)
            takeChanges(isBlockStart, length);
        processSubBlock(inputs, output, done, length);
        advanceTime(length);
        done += length;
    }
    if (audioEnv->latency != formerLatency)
        setLatencyChanged();
    events.clear();
}

bool CAudioWrapper::applyFormat()
{
    int inputCount = 0;
    double rate = 0.0;
    if (!hostFormat.take(inputCount, rate))
        return false;
    interfaceBase->tellIoChannelCounts();
    graph.publishInput(inputCount, rate);
    return true;
}

bool CAudioWrapper::dispatchEvents(int position, int& length)
{
    const auto at = static_cast<std::uint32_t>(position);
    bool hasEvents = false;
    const CParamEvent* next = events.peek();
    for (; next && next->offset <= at; next = events.peek()) {
        const CParamEvent event = *next; // a handler may queue, which moves the events
        events.skip();
        hasEvents = true;
        if (event.kind == CParamEvent::kParamChange)
            onParamEvent(event);
        else
            onEvent(event);
    }
    // The next event begins a sub-block of its own.
    if (next)
        length = static_cast<int>(std::min(static_cast<std::uint32_t>(length), next->offset - at));
    return hasEvents;
}

void CAudioWrapper::takeChanges(bool isBlockStart, int length)
{
    {
        const CLockScope lock(audioEnv->lock);
        if (isBlockStart) {
            blockRate = audioEnv->sampleRate;
            audioEnv->blockEndTime = length / blockRate + audioEnv->streamTime;
            vizCollector->takePending();
        }
        paramCollector->takeQueue();
    }
    if (isBlockStart)
        vizCollector->applyPending();
    paramCollector->applyQueue();
}

void CAudioWrapper::processSubBlock(const void* const* inputs, const CHostOutput& output, int done,
                                    int length)
{
    copyIn(inputs, done, length);
    graph.run();
    const bool isUsable = graph.isOutputUsable(output);
    if (isUsable)
        graph.writeOutput(output, done, length);
    else
        silence(output, done, length);
    graph.release();
    // What made a sample that isn't finite would make it again from its own state.
    if (!isUsable)
        graph.reset();
}

void CAudioWrapper::copyIn(const void* const* inputs, int done, int length)
{
    const CHostInput main(inputs, hostFormat.getMain());
    for (int channel = 0; channel < main.getChannelCount(); ++channel)
        main.read(channel, done, graph.beginInput(channel, length), length);
    const CHostInput sidechain(sidechainBuffers, hostFormat.getSidechain());
    for (int channel = 0; channel < sidechain.getChannelCount(); ++channel)
        sidechain.read(channel, done, graph.beginInput(main.getChannelCount() + channel, length),
                       length);
}

void CAudioWrapper::advanceTime(int length)
{
    audioEnv->streamTime += length / blockRate;
}

} // namespace tsm
