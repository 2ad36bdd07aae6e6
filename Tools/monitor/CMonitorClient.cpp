#include "Tools/monitor/CMonitorClient.h"

#include "Core/CResourceMap.h"
#include "Core/CText.h"
#include "Tools/engine/EngineNames.h"
#include "Tools/monitor/CMessageText.h"

namespace tsm {

extern const CResourceEntry kMonitorResources[];

namespace {

constexpr double kInactiveSeconds = 1.0; // the slower meter sends six times in it

} // namespace

CMonitorClient::~CMonitorClient()
{
    root.reset(); // the listeners' numbers end with it
}

CError* CMonitorClient::attach(CApplication& application, CObject& instanceRoot,
                               const std::vector<CString>& paramNames, double framesPerSecond,
                               bool ticksItself)
{
    instance = &instanceRoot;
    TSM_TRY(loadTree(application, framesPerSecond, ticksItself));
    delivery = std::make_unique<CVizDelivery>(kInactiveSeconds, framesPerSecond);
    client->setVizProcessor(delivery.get());
    TSM_TRY(listen(paramNames));
    TSM_TRY(fetch());
    return nullptr;
}

CError* CMonitorClient::loadTree(CApplication& application, double framesPerSecond,
                                 bool ticksItself)
{
    if (!application.findCreator("monitor:connector")) {
        CResourceMap::get().addAll(kMonitorResources);
        TSM_TRY(application.registerCreator(creatorRow<CMonitorConnector>("monitor:connector")));
        TSM_TRY(application.registerCreator(creatorRow<CMonitorFrame>("monitor:frame")));
    }
    TSM_TRY(application.initRootObject(root, CString()));
    TSM_TRY(root->setAttrPointer("BaseConnectorRootPtr", &instance, true));
    TSM_TRY(
        root->setAttr("monitor-timer", CString(ticksItself ? "core:timer" : "core:object"), true));
    TSM_TRY(root->setAttr("monitor-fps", toFixed(framesPerSecond, 6), true));
    if (events.onMessage) {
        watch = [this](bool isToBase, const CByteBuffer& bytes) {
            events.onMessage(isToBase, messageText(bytes.data(), bytes.getSize()));
        };
        TSM_TRY(root->setAttrPointer("monitor-watch", &watch, true));
    }
    TSM_TRY(root->loadXMLData("Monitor.xml", false));
    TSM_TRY(root->findObjectChecked(client, "monitor.client"));
    TSM_TRY(root->findObjectChecked(timer, "monitor.connector.timer"));
    CMonitorFrame* frame = nullptr;
    TSM_TRY(root->findObjectChecked(frame, "monitor.frame"));
    frame->onHistory = events.onHistory;
    if (ticksItself)
        frame->onTick = events.onTick;
    return nullptr;
}

CError* CMonitorClient::listen(const std::vector<CString>& paramNames)
{
    TSM_TRY(listenMeters());
    for (const CString& name : paramNames) {
        params.push_back(std::make_unique<CMonitorParam>(
            *root, name, [this](const CMonitorParam& param) { events.onParam(param); }));
        TSM_TRY(client->listenParam(params.back()->listenerId, kMainPath + name, *params.back()));
    }
    TSM_TRY(client->listenRegistry(registryId, "plugin.param-registry", *this));
    TSM_TRY(client->requestUndoHistory());
    return nullptr;
}

CError* CMonitorClient::listenMeters()
{
    for (const char* name : kMeterNames) {
        std::uint32_t id = 0;
        TSM_TRY(client->listenViz(id, name));
        meters.push_back(std::make_unique<CMonitorMeter>(name, events.onReading, events.onSilence));
        delivery->addListener(name, *meters.back());
    }
    return nullptr;
}

CError* CMonitorClient::fetch()
{
    TSM_TRY(timer->sendEvent("tick"));
    return nullptr;
}

CError* CMonitorClient::requestReadings(double framesPerSecond)
{
    delivery->tick();
    TSM_TRY(client->requestVizData(framesPerSecond));
    return nullptr;
}

void CMonitorClient::onBankData(bool isFactory, const CString&, const COwnedArray<CString>& names,
                                std::int32_t)
{
    if (!isFactory)
        return;
    factoryNames.clear();
    for (const CString& name : names)
        factoryNames.push_back(name);
}

CError* CMonitorClient::run(const CMonitorStep& step)
{
    using EAction = CMonitorStep::EAction;
    switch (step.action) {
    case EAction::Set:
    case EAction::Gesture:
        TSM_TRY(edit(step));
        break;
    case EAction::Reset:
        TSM_TRY(resetToDefault(step.name));
        break;
    case EAction::Undo:
        TSM_TRY(moveInHistory(-1));
        break;
    case EAction::Redo:
        TSM_TRY(moveInHistory(1));
        break;
    case EAction::Preset:
        TSM_TRY(activateFactory(step.name));
        break;
    case EAction::Program: {
        std::int32_t index = 0;
        if (!parseWholeInt(step.name, index))
            TSM_FAIL("'%1' is no number of a program", step.name);
        TSM_TRY(client->setCurrentProgram(registryId, index));
        break;
    }
    case EAction::Exchange:
        TSM_TRY(client->exchangeShadowPreset(registryId));
        break;
    case EAction::Copy:
        TSM_TRY(client->updateShadowPreset(registryId));
        break;
    }
    return nullptr;
}

CError* CMonitorClient::findParam(CMonitorParam*& param, const CString& name) const
{
    for (const auto& known : params)
        if (known->getName() == name) {
            param = known.get();
            return nullptr;
        }
    TSM_FAIL("unknown parameter '%1'", name);
}

CError* CMonitorClient::edit(const CMonitorStep& step)
{
    CMonitorParam* param = nullptr;
    TSM_TRY(findParam(param, step.name));
    std::uint32_t undoId = 0;
    TSM_TRY(client->createUndoData(undoId, param->getTitle() + " change"));
    for (const CString& text : step.texts) {
        CAudioParamChange change;
        TSM_TRY(param->makeChange(text, change));
        TSM_TRY(client->changeParam(param->listenerId, undoId, change));
    }
    TSM_TRY(client->submitUndoData(undoId));
    return nullptr;
}

CError* CMonitorClient::resetToDefault(const CString& name)
{
    CMonitorParam* param = nullptr;
    TSM_TRY(findParam(param, name));
    std::uint32_t undoId = 0;
    TSM_TRY(client->createUndoData(undoId, param->getTitle() + " reset"));
    TSM_TRY(client->resetParam(param->listenerId, kAllParamGroups, -1, undoId, false));
    TSM_TRY(client->submitUndoData(undoId));
    return nullptr;
}

CError* CMonitorClient::moveInHistory(int by)
{
    TSM_TRY(fetch()); // the place is what the base has told
    TSM_TRY(client->setUndoHistoryPos(client->getUndoPosition() + by));
    return nullptr;
}

CError* CMonitorClient::activateFactory(const CString& name)
{
    for (std::size_t i = 0; i < factoryNames.size(); ++i)
        if (factoryNames[i] == name) {
            TSM_TRY(client->activateFactoryPreset(registryId, static_cast<std::int32_t>(i)));
            return nullptr;
        }
    TSM_FAIL("there is no preset '%1'", name);
}

std::string CMonitorClient::getHistoryText() const
{
    const COwnedArray<CString>& names = client->getUndoNames();
    const int position = client->getUndoPosition();
    std::string text = std::to_string(position) + "/" + std::to_string(names.getCount() - 1);
    if (position >= 0 && position < names.getCount())
        text += " " + names[position].toUtf8();
    return text;
}

} // namespace tsm
