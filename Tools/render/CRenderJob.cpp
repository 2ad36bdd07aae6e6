#include "Tools/render/CRenderJob.h"

#include "Audio/CAudioParamRegistry.h"
#include "Audio/Processes/CBankedImpulse.h"
#include "Audio/ProductCreators.h"
#include "Core/CAppData.h"
#include "Core/CMemoryReader.h"
#include "Core/CWriteSeqBuffer.h"
#include "Tools/Support/CAutomationText.h"
#include "Tools/Support/CWholeFile.h"

#include <iostream>

namespace tsm {

namespace {

constexpr std::size_t kMaxStateBytes = std::size_t{64} << 20;

} // namespace

CRenderJob::CRenderJob(const CRenderOptions& wanted) : options(wanted), sound(wanted) {}

CRenderJob::~CRenderJob() = default;

CError* CRenderJob::run()
{
    if (!options.isList)
        TSM_TRY(sound.openInput());
    // Some parameters are settings of the user's, in all sessions.
    CAppData::keepInMemory();
    TSM_TRY(startEngine());
    TSM_TRY(applySettings());
    TSM_TRY(readAutomations());
    if (options.isList) {
        std::cout << params->list();
        return nullptr;
    }
    startProcessing();
    TSM_TRY(render());
    TSM_TRY(saveState());
    sound.report("reelpath-render", params->getTextsOfSet());
    return nullptr;
}

CError* CRenderJob::startEngine()
{
    TSM_TRY(startProduct(application));
    wrapper = std::make_unique<CEngineWrapper>();
    TSM_TRY(wrapper->prepare());
    params = std::make_unique<CEngineParams>(wrapper->getParamCollector());
    return options.isList ? nullptr : sound.checkChannels(wrapper->getIntChannelCount());
}

CError* CRenderJob::loadState()
{
    if (options.loadStatePath.empty())
        return nullptr;
    std::string bytes;
    TSM_TRY(readWholeFile(options.loadStatePath, kMaxStateBytes, bytes));
    CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
    return wrapper->loadState(reader);
}

CError* CRenderJob::chooseProgram()
{
    if (options.program.empty())
        return nullptr;
    const CString wanted = CString::fromUtf8(options.program);
    CAudioParamRegistry& registry = wrapper->getParamRegistry();
    CString name;
    for (int i = 0; registry.getProgramName(i, name); ++i)
        if (name == wanted) {
            registry.selectProgram(i, wrapper.get());
            return nullptr;
        }
    TSM_FAIL("there is no preset '%1'", wanted);
}

CError* CRenderJob::chooseImpulse()
{
    if (options.impulsePath.empty())
        return nullptr;
    const CString path = CString::fromUtf8(options.impulsePath);
    if (!options.isList) {
        // The engine would pass the sound without it, and say nothing.
        CImpulseSource source;
        CBankedImpulseRef impulse;
        TSM_TRY(CImpulseSource::fromFile(source, path));
        TSM_TRY(loadImpulse(impulse, source, sound.getRate(), sound.getChannelCount()));
    }
    TSM_TRY(params->set({"modReelpath.cab-filename", path}));
    return params->set({"modReelpath.cab-index", "0"});
}

CError* CRenderJob::saveState()
{
    if (options.saveStatePath.empty())
        return nullptr;
    CWriteSeqBuffer buffer;
    TSM_TRY(wrapper->saveState(buffer));
    CByteBuffer bytes;
    buffer.takeData(bytes);
    return writeWholeFile(options.saveStatePath, {reinterpret_cast<const char*>(bytes.data()),
                                                  static_cast<std::size_t>(bytes.getSize())});
}

CError* CRenderJob::applySettings()
{
    TSM_TRY(loadState());
    TSM_TRY(chooseProgram());
    TSM_TRY(chooseImpulse());
    if (options.isLinearPhase)
        TSM_TRY(params->set({"lp-oversampling-enable", "1"}));
    for (const CNamedText& setting : options.settings)
        TSM_TRY(params->set(setting));
    return nullptr;
}

CError* CRenderJob::readAutomations()
{
    for (const CNamedText& automation : options.automations)
        TSM_TRY(readAutomation(automation));
    timeline.sort();
    wrapper->reserveEvents(static_cast<int>(timeline.getCount()));
    return nullptr;
}

CError* CRenderJob::readAutomation(const CNamedText& automation)
{
    CAudioParam* param = nullptr;
    TSM_TRY(params->findNumeric(param, automation.name));
    std::vector<CAutomationPoint> points;
    TSM_TRY(parseAutomationText(automation.text, points));
    const int index = wrapper->addEventParam(*param);
    for (const CAutomationPoint& point : points) {
        double value = 0.0;
        TSM_TRY(params->parse(value, *param, automation.name, point.text));
        timeline.add(point.seconds, sound.getRate(), index, value);
    }
    return nullptr;
}

void CRenderJob::startProcessing()
{
    wrapper->setFormat(sound.getRate(), sound.getChannelCount(), !options.useFloatHost);
    wrapper->setOffline(options.isOffline);
    wrapper->startProcessing();
}

CError* CRenderJob::render()
{
    CHostBlock block(sound.getChannelCount(), options.blockSize, options.useFloatHost);
    TSM_TRY(sound.run(
        wrapper->queryLatency(), wrapper->getTailSamples(),
        [&](double* frames, std::int64_t position, int count) -> CError* {
            block.setInput(frames, count);
            timeline.takeUntil(position + count, [&](const CParamTimeline::CPoint& point) {
                wrapper->queueParamEvent(static_cast<std::uint32_t>(point.frame - position),
                                         point.index, point.value);
            });
            wrapper->processBlock(block.getInputs(), block.getOutputs(), count);
            block.getOutput(frames, count);
            return nullptr;
        }));
    wrapper->stopProcessing();
    return nullptr;
}

} // namespace tsm
