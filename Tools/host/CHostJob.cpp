#include "Tools/host/CHostJob.h"

#include "Tools/Support/CAutomationText.h"
#include "Tools/Support/CWholeFile.h"
#include "Tools/host/CControlThread.h"
#include "Tools/host/CHostReport.h"
#include "Tools/hostlib/CMemoryStream.h"
#include "Tools/hostlib/CVstPresetFile.h"
#include "Tools/hostlib/VstModuleInfo.h"

#include <algorithm>
#include <iostream>
#include <optional>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr std::size_t kMaxStateBytes = std::size_t{64} << 20;

} // namespace

CError* CHostJob::run()
{
    const bool isRender = options.command == EHostCommand::Render;
    if (isRender && !options.inPath.empty())
        TSM_TRY(sound.openInput());
    TSM_TRY(bundle.open(options.pluginPath, context->asUnknown()));
    if (options.command == EHostCommand::ModuleInfo)
        return writeModuleInfo();
    TSM_TRY(createInstance());
    if (options.command == EHostCommand::Info)
        std::cout << tellInfo(bundle, *effect, instance);
    else if (options.command == EHostCommand::List)
        std::cout << tellParams(instance);
    else if (options.command == EHostCommand::Programs)
        std::cout << tellPrograms(instance);
    return isRender ? runRender() : nullptr;
}

CError* CHostJob::writeModuleInfo() const
{
    const std::string text = makeModuleInfo(bundle);
    if (!options.outPath.empty())
        return writeWholeFile(options.outPath, text);
    std::cout << text;
    return nullptr;
}

CError* CHostJob::createInstance()
{
    TSM_TRY(bundle.findEffect(effect));
    TSM_TRY(instance.create(bundle, *effect, context->asUnknown()));
    params = std::make_unique<CVstParams>(instance.getController());
    return nullptr;
}

CError* CHostJob::runRender()
{
    TSM_TRY(loadStates());
    TSM_TRY(chooseProgram());
    TSM_TRY(applySettings());
    if (!options.inPath.empty()) {
        TSM_TRY(readAutomations());
        TSM_TRY(render());
    }
    return options.saveStatePath.empty() ? nullptr : saveState();
}

CError* CHostJob::loadStates()
{
    if (!options.presetPath.empty())
        TSM_TRY(loadPreset());
    if (options.loadStatePath.empty())
        return nullptr;
    std::string bytes;
    TSM_TRY(readWholeFile(options.loadStatePath, kMaxStateBytes, bytes));
    return instance.setState(bytes);
}

CError* CHostJob::loadPreset()
{
    std::string bytes;
    TSM_TRY(readWholeFile(options.presetPath, kMaxStateBytes, bytes));
    CVstPresetFile preset;
    TSM_TRY(CVstPresetFile::parse(bytes, preset));
    if (!isSameId(preset.classId, effect->id))
        TSM_FAIL("'%1' is a preset of another plug-in", CString::fromUtf8(options.presetPath));
    TSM_TRY(instance.setState(preset.componentState));
    if (preset.controllerState) {
        const auto stream = IPtr<CMemoryStream>::owned(new CMemoryStream(*preset.controllerState));
        const tresult result = instance.getController().setEditorState(stream.get());
        if (result != kResultOk && result != kNotImplemented)
            TSM_FAIL("the controller refuses the state in '%1'",
                     CString::fromUtf8(options.presetPath));
    }
    return nullptr;
}

CError* CHostJob::chooseProgram()
{
    int index = options.programIndex;
    const CVstPrograms programs(instance, *params);
    if (!options.program.empty())
        TSM_TRY(programs.find(CString::fromUtf8(options.program), index));
    if (index < 0)
        return nullptr;
    TSM_TRY(programs.check(index));
    const CVstParam* const param = params->findProgramParam();
    const double value = programs.valueOf(index);
    params->setValue(*param, value);
    programValues.push_back({param, value});
    noteSet(*param);
    return nullptr;
}

CError* CHostJob::applySettings()
{
    for (const CNamedText& setting : options.settings) {
        const CVstParam* param = nullptr;
        double value = 0.0;
        TSM_TRY(params->find(setting.name, param));
        TSM_TRY(params->parse(*param, setting.text, value));
        params->setValue(*param, value);
        settings.push_back({param, value});
        noteSet(*param);
    }
    return nullptr;
}

CError* CHostJob::readAutomations()
{
    for (const CNamedText& automation : options.automations) {
        const CVstParam* param = nullptr;
        TSM_TRY(params->find(automation.name, param));
        std::vector<CAutomationPoint> points;
        TSM_TRY(parseAutomationText(automation.text, points));
        automated.push_back(param);
        noteSet(*param);
        for (const CAutomationPoint& point : points) {
            double value = 0.0;
            TSM_TRY(params->parse(*param, point.text, value));
            timeline.add(point.seconds, sound.getRate(), static_cast<int>(automated.size()) - 1,
                         value);
        }
    }
    timeline.sort();
    return nullptr;
}

CError* CHostJob::render()
{
    setUp = {static_cast<double>(sound.getRate()), options.blockSize, sound.getChannelCount(),
             !options.useFloatHost, options.isOffline};
    TSM_TRY(instance.setUp(setUp));
    TSM_TRY(instance.start());
    CVstProcessData data(instance, setUp);
    // Programs go first and alone: a plug-in may take points in any order.
    for (const CSetValue& set : programValues)
        data.addPoint(set.param->id, 0, set.value);
    if (!programValues.empty())
        TSM_TRY(data.flush());
    for (const CSetValue& set : settings)
        data.addPoint(set.param->id, 0, set.value);
    TSM_TRY(process(data));
    instance.stop();
    sound.report("reelpath-host", getTextsOfSet());
    return nullptr;
}

CError* CHostJob::process(CVstProcessData& data)
{
    std::optional<CControlThread> control;
    if (options.useControlThread)
        control.emplace(instance);
    std::vector<double> lastValues(automated.size(), -1.0);
    TSM_TRY(sound.run(
        instance.getLatency(), instance.getTail(),
        [&](double* frames, std::int64_t position, int count) -> CError* {
            timeline.takeUntil(position + count, [&](const CParamTimeline::CPoint& point) {
                const auto index = static_cast<std::size_t>(point.index);
                data.addPoint(automated[index]->id, static_cast<int32>(point.frame - position),
                              point.value);
                lastValues[index] = point.value;
            });
            return data.process(frames, position, count);
        }));
    // What a host's display would show of the automation; earlier it could come before its sample.
    for (std::size_t i = 0; i < automated.size(); ++i)
        if (lastValues[i] >= 0.0)
            params->setValue(*automated[i], lastValues[i]);
    if (!control)
        return nullptr;
    int rounds = 0;
    TSM_TRY(control->finish(rounds));
    std::cerr << "reelpath-host: " << rounds << " rounds of the control thread\n";
    return nullptr;
}

CError* CHostJob::saveState() const
{
    std::string bytes;
    TSM_TRY(instance.getState(bytes));
    return writeWholeFile(options.saveStatePath, bytes);
}

void CHostJob::noteSet(const CVstParam& param)
{
    if (std::ranges::find(setParams, &param) == setParams.end())
        setParams.push_back(&param);
}

std::vector<CNamedText> CHostJob::getTextsOfSet() const
{
    std::vector<CNamedText> texts;
    for (const CVstParam* param : setParams)
        texts.push_back({param->title, params->toText(*param, params->getValue(*param))});
    return texts;
}

} // namespace tsm
