#include "Tests/Fuzz/CFuzzClient.h"

#include "Audio/CAudioVizDataMeter.h"
#include "Audio/CVizListener.h"

#include <cmath>

namespace tsm {
namespace {

constexpr const char* kMeter = "plugin.modMain.modMeterOut";

} // namespace

class CFuzzClient::CEar : public CVizListener {
public:
    void onData(const CAudioVizData& record) override
    {
        promise(std::isfinite(dynamic_cast<const CAudioVizDataMeter&>(record).rms),
                "what a meter says is finite");
    }
    void onInactive() override {}
};

CFuzzClient::CFuzzClient()
{
    (void)fuzzProduct();
    promise(!hasFailed(wrapper.init()), "an instance begins");
    wrapper.afterInit();
    promise(!hasFailed(attach()), "a client attaches");
}

CFuzzClient::~CFuzzClient()
{
    root.reset(); // the listeners' numbers end with it
}

CError* CFuzzClient::attach()
{
    instanceRoot = &wrapper.getRoot();
    TSM_TRY(instanceRoot->findObjectChecked(base, "plugin.interface-base"));
    TSM_TRY(instanceRoot->findObjectChecked(connector, "plugin.interface-base-connector"));
    TSM_TRY(CApplication::get()->initRootObject(root, CString()));
    TSM_TRY(root->setAttrPointer("BaseConnectorRootPtr", &instanceRoot, true));
    TSM_TRY(root->setAttr("client-timer", CString("core:object"), true));
    TSM_TRY(root->loadXMLData(TSM_CLIENT_DOCUMENT, false));
    TSM_TRY(root->findObjectChecked(client, "ui.interface-client"));
    TSM_TRY(root->findObjectChecked(timer, "ui.interface-client-connector.timer"));
    ofGain.reset(new CParamMirror(*root));
    ofNames.reset(new CParamMirror(*root));
    ear.reset(new CEar);
    std::uint32_t meter = 0;
    delivery.addListener(kMeter, *ear);
    client->setVizProcessor(&delivery);
    TSM_TRY(client->listenParam(gain, "plugin.modMain.modReelpath.recgain", *ofGain));
    TSM_TRY(client->listenParam(names, "plugin.modMain.io-params.group-names", *ofNames));
    TSM_TRY(client->listenRegistry(programs, "plugin.param-registry", *this));
    TSM_TRY(client->listenViz(meter, kMeter));
    TSM_TRY(tick());
    return nullptr;
}

CError* CFuzzClient::sendToBase(const std::uint8_t* bytes, std::size_t size)
{
    CGuardedInput message(bytes, size);
    return connector->processClientData(message);
}

void CFuzzClient::sendToClient(const std::uint8_t* bytes, std::size_t size)
{
    CPtr<CInterfaceBlock> block(new CInterfaceBlock);
    block->bytes = CByteBuffer(bytes, static_cast<int>(size));
    connector->send(1, std::move(block));
}

void CFuzzClient::checkUnderstanding()
{
    promise(!hasFailed(client->requestUndoHistory()), "the base answers");
    promise(!hasFailed(tick()), "the client hears");
    COwnedArray<CString> steps;
    std::int32_t position = 0;
    base->getHistory(steps, position);
    promise(client->getUndoPosition() == position &&
                client->getUndoNames().getCount() == steps.getCount(),
            "the client knows what is");
}

} // namespace tsm
