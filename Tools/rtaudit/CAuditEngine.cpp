#include "Tools/rtaudit/CAuditEngine.h"

#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamRegistry.h"
#include "Audio/CAudioVizCollector.h"
#include "Audio/ProductCreators.h"
#include "Core/CAppData.h"
#include "Core/CWriteSeqBuffer.h"
#include "Tools/engine/EngineNames.h"
#include "Tools/rtaudit/CThreadAudit.h"

#include <cxxabi.h>
#include <malloc.h>
#include <optional>
#include <random>

namespace tsm {
namespace {

constexpr std::size_t kNoiseSamples = 65536;

bool liesIn(const void* place, const void* begin, std::size_t size)
{
    const auto* first = static_cast<const char*>(begin);
    return place >= first && place < first + size;
}

std::string className(const CObject& object)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> text(
        abi::__cxa_demangle(typeid(object).name(), nullptr, nullptr, &status), &std::free);
    const std::string name = status == 0 ? text.get() : typeid(object).name();
    return name.substr(name.rfind(':') + 1);
}

/// The object, from here down, in whose memory that place lies.
const CObject* findAround(const CObject& object, const void* place)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the library's function asks for it
    void* whole = const_cast<void*>(dynamic_cast<const void*>(&object));
    if (liesIn(place, whole, malloc_usable_size(whole)))
        return &object;
    for (const CObject* child : object.getChildren())
        if (const CObject* found = findAround(*child, place))
            return found;
    return nullptr;
}

} // namespace

void CAuditWrapper::onParamEvent(const CParamEvent& event)
{
    if (event.index == kWorkEvent)
        work();
    else
        CEngineWrapper::onParamEvent(event);
}

CAuditEngine::~CAuditEngine() = default;

CError* CAuditEngine::start(int hostBlock)
{
    blockSize = hostBlock;
    std::mt19937 generator(1);
    std::uniform_real_distribution<double> uniform(-0.7, 0.7);
    noise.resize(kNoiseSamples + static_cast<std::size_t>(blockSize));
    for (double& sample : noise)
        sample = uniform(generator);
    out.resize(2 * static_cast<std::size_t>(blockSize));
    // Some of what is changed here is a setting of the user's, in all sessions.
    CAppData::keepInMemory();
    TSM_TRY(startProduct(application));
    wrapper = std::make_unique<CAuditWrapper>();
    TSM_TRY(wrapper->init());
    TSM_TRY(wrapper->getRoot().findObjectChecked(vizCollector, "plugin.viz-collector"));
    wrapper->afterInit();
    wrapper->reserveEvents(64);
    setFormat(2, kRate);
    settle();
    return nullptr;
}

void CAuditEngine::process(CAuditCounts* counts)
{
    const void* const inputs[] = {noise.data() + position, noise.data() + position / 2};
    void* const outputs[] = {out.data(), out.data() + blockSize};
    {
        std::optional<CThreadAudit> audit;
        if (counts)
            audit.emplace(*counts);
        wrapper->processBlock(inputs, outputs, blockSize);
    }
    position = (position + static_cast<std::size_t>(blockSize)) % kNoiseSamples;
}

void CAuditEngine::settle()
{
    constexpr int kSamples = kRate / 4;
    for (int done = 0; done < kSamples; done += blockSize)
        process(nullptr);
}

CAudioParam* CAuditEngine::find(const char* name) const
{
    CAudioParam* param = wrapper->getParamCollector().find(kMainPath + CString(name));
    return param && param->getInfo() ? param : nullptr;
}

void CAuditEngine::set(const char* name, double real)
{
    if (CAudioParam* param = find(name))
        param->setValue(0, 0, real);
}

void CAuditEngine::queue(const char* name, double real)
{
    if (CAudioParam* param = find(name))
        wrapper->queueParamEvent(static_cast<std::uint32_t>(blockSize / 2),
                                 wrapper->addEventParam(*param), real);
}

void CAuditEngine::selectProgram(int index)
{
    wrapper->getParamRegistry().selectProgram(index, wrapper.get());
}

void CAuditEngine::setFormat(int channels, double rate)
{
    wrapper->stopProcessing();
    wrapper->setFormat(rate, channels);
    wrapper->startProcessing();
}

void CAuditEngine::runInside(std::function<void()> work)
{
    wrapper->work = std::move(work);
    wrapper->queueParamEvent(0, CAuditWrapper::kWorkEvent, 0.0);
}

void CAuditEngine::watchMeters(bool isWatched)
{
    if (isWatched == isWatching)
        return;
    isWatching = isWatched;
    for (const char* name : kMeterNames) {
        CAudioVizSource& source = vizCollector->getSource(name);
        if (isWatched)
            vizCollector->addListener(source);
        else
            vizCollector->removeListener(source);
    }
}

void CAuditEngine::takeMeterData()
{
    constexpr double kFramesPerSecond = 30.0;
    CWriteSeqBuffer stream;
    handleError(vizCollector->writeStream(stream, kFramesPerSecond));
}

std::string CAuditEngine::lockOwner(const CLockCounts& lock) const
{
    if (liesIn(lock.lock, wrapper.get(), sizeof *wrapper))
        return "the wrapper";
    CArray<CAudioParam*> params;
    wrapper->getParamCollector().listParams(params);
    for (const CAudioParam* param : params)
        if (liesIn(lock.lock, param, sizeof *param))
            return "a parameter";
    if (const CObject* found = findAround(wrapper->getRoot(), lock.lock))
        return className(*found);
    // Of the function, whose name depends on what the compiler took in, the class.
    const std::string function = symbols.find(lock.caller);
    return function.substr(0, function.rfind("::"));
}

} // namespace tsm
