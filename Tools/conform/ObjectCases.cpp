#include "Tools/conform/CBareInstance.h"
#include "Tools/conform/CFindings.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/conform/InterfaceIds.h"
#include "Tools/hostlib/CHostMessage.h"
#include "Tools/hostlib/CMemoryStream.h"

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

void findFaults(const char* name, FUnknown* object, CFindings& findings)
{
    for (const CInterfaceFault& fault : findInterfaceFaults(*object))
        findings.fail(std::string(name) + ": " + fault.what, fault.expected, fault.came);
}

CError* checkIdentity(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CBareInstance bare;
    TSM_TRY(bare.make(plugin));
    findFaults("component before initialize()", bare.component.get(), findings);
    bare.initialize(plugin);
    findFaults("component", bare.component.get(), findings);
    findFaults("processor", bare.processor.get(), findings);
    findFaults("controller", bare.controller.get(), findings);
    for (const CInterfaceName& needed : {CInterfaceName{"IPluginBase", IPluginBase::iid},
                                         CInterfaceName{"IComponent", IComponent::iid}}) {
        void* found = nullptr;
        findings.expectOk("queryInterface() of the component for " + std::string(needed.name),
                          bare.component->queryInterface(needed.id, &found));
        if (found)
            static_cast<FUnknown*>(found)->release();
    }
    bare.terminate();
    findFaults("component behind terminate()", bare.component.get(), findings);
    return nullptr;
}

/// The last release of each object must come when the host expects it.
CError* checkLastRelease(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CBareInstance bare;
    TSM_TRY(bare.make(plugin));
    bare.initialize(plugin);
    // As a host does that keeps what it finds.
    auto units = queryAs<IUnitInfo>(bare.controller.get());
    const uint32 count = countReferences(*bare.component);
    bare.terminate();
    bare.processor.reset();
    findings.expect(countReferences(*bare.component) < count,
                    "references of the component when that to its processor was released", "fewer",
                    std::to_string(countReferences(*bare.component)));
    if (!bare.hasOwnController) {
        bare.controller.reset();
        units.reset();
    }
    IComponent* const last = bare.component.take();
    findings.expectEqual("references of the component behind the last release", 0, last->release());
    return nullptr;
}

/// What the host lends must come back: by terminate() and setComponentHandler(null).
CError* checkHostObjects(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    const uint32 contextBefore = countReferences(*plugin.getContext().asUnknown());
    const auto handler = IPtr<CHostHandler>::owned(new CHostHandler);
    const auto stream = IPtr<CMemoryStream>::owned(new CMemoryStream);
    CBareInstance bare;
    TSM_TRY(bare.make(plugin));
    bare.initialize(plugin);
    findings.expectOk("setComponentHandler()", bare.controller->setComponentHandler(handler.get()));
    findings.expectOk("setComponentHandler() of the same handler",
                      bare.controller->setComponentHandler(handler.get()));
    bare.component->getState(stream.get());
    stream->rewind();
    bare.component->setState(stream.get());
    stream->rewind();
    bare.controller->setComponentState(stream.get());
    findings.expectEqual("references to a stream behind getState() and setState()", 1,
                         countReferences(static_cast<FObject&>(*stream)));
    bare.controller->setComponentHandler(nullptr);
    findings.expectEqual("references to the handler behind setComponentHandler(null)", 1,
                         countReferences(static_cast<FObject&>(*handler)));
    bare.controller->setComponentHandler(handler.get());
    bare.terminate();
    findings.expectEqual("references to the handler behind terminate()", 1,
                         countReferences(static_cast<FObject&>(*handler)));
    findings.expectEqual("references to the host's context behind terminate()", contextBefore,
                         countReferences(*plugin.getContext().asUnknown()));
    return nullptr;
}

/// A host without a context, and one without a handler.
CError* checkNullObjects(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CBareInstance bare;
    TSM_TRY(bare.make(plugin));
    bare.controller->setComponentHandler(nullptr);
    findings.expectOk("initialize(null)", bare.component->initialize(nullptr));
    if (bare.hasOwnController)
        findings.expectOk("initialize(null) of the controller",
                          bare.controller->initialize(nullptr));
    findings.expectOk("setComponentHandler(null)", bare.controller->setComponentHandler(nullptr));
    findings.expectRefused("setState(null)", bare.component->setState(nullptr));
    findings.expectRefused("getState(null)", bare.component->getState(nullptr));
    bare.controller->setComponentState(nullptr);
    for (int32 i = 0; i < bare.controller->getParameterCount(); ++i) {
        ParameterInfo info = {};
        bare.controller->getParameterInfo(i, info);
        bare.controller->setParamNormalized(info.id, 0.5);
    }
    findings.expectOk("terminate()", bare.terminate());
    return nullptr;
}

void tryPoint(IConnectionPoint& point, IConnectionPoint& peer, CFindings& findings)
{
    const auto message = IPtr<CHostMessage>::owned(new CHostMessage);
    findings.expectRefused("connect(null)", point.connect(nullptr));
    findings.expectOk("connect()", point.connect(&peer));
    point.notify(nullptr);
    message->setMessageID("nothing that a plug-in knows");
    point.notify(message.get());
    findings.expectEqual("references to a message behind notify()", 1,
                         countReferences(static_cast<FObject&>(*message)));
    findings.expectOk("disconnect()", point.disconnect(&peer));
    point.disconnect(&peer);
    point.disconnect(nullptr);
}

CError* checkConnection(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CBareInstance bare;
    TSM_TRY(bare.make(plugin));
    bare.initialize(plugin);
    const auto component = queryAs<IConnectionPoint>(bare.component.get());
    const auto controller = queryAs<IConnectionPoint>(bare.controller.get());
    if (!bare.hasOwnController || !component || !controller) {
        findings.skip(bare.hasOwnController ? "no connection points" : "one object");
        bare.terminate();
        return nullptr;
    }
    const uint32 before = countReferences(*bare.controller);
    tryPoint(*component, *controller, findings);
    findings.expectEqual("references to a peer behind disconnect()", before,
                         countReferences(*bare.controller));
    tryPoint(*controller, *component, findings);
    // Hosts may forget to take the two apart.
    component->connect(controller.get());
    controller->connect(component.get());
    bare.terminate();
    findings.expectEqual("references to a peer behind terminate()", before,
                         countReferences(*bare.controller));
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"objects.identity", "queryInterface and references of component, processor, controller",
     checkIdentity},
    {"objects.last-release", "objects end with their last reference", checkLastRelease},
    {"objects.host-objects", "the host's objects are given back", checkHostObjects},
    {"objects.null", "no context, no handler, no stream", checkNullObjects},
    {"objects.connection", "connection points of component and controller", checkConnection},
};

} // namespace

std::span<const CConformCase> objectCases()
{
    return kCases;
}

} // namespace tsm
