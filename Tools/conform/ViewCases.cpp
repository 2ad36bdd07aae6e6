#include "Tools/conform/CFindings.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/conform/InterfaceIds.h"

#include "Audio/VST/Interfaces/IPlugView.h"

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

void tryView(IPlugView& view, CFindings& findings)
{
    for (const CInterfaceFault& fault : findInterfaceFaults(view))
        findings.fail("view: " + fault.what, fault.expected, fault.came);
    findings.expectRefused("isPlatformTypeSupported() of another system's windows",
                           view.isPlatformTypeSupported("HWND"));
    ViewRect size{-1, -1, -1, -1};
    findings.expectOk("getSize() before attached()", view.getSize(&size));
    findings.expect(size.getWidth() > 0 && size.getHeight() > 0, "size before attached()",
                    "more than nothing",
                    std::to_string(size.getWidth()) + " by " + std::to_string(size.getHeight()));
    view.setFrame(nullptr);
}

/// As scanners do: a view without a window.
CError* checkUnattached(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IEditController& controller = instance.getController();
    for (const FIDString name : {FIDString(nullptr), FIDString(""), FIDString("no such view")}) {
        const auto other = IPtr<IPlugView>::owned(controller.createView(name));
        if (name && *name)
            findings.expect(!other, "createView() of an unknown name", "null", "a view");
    }
    auto view = IPtr<IPlugView>::owned(controller.createView(kEditorViewType));
    if (!view) {
        findings.skip("no editor");
        return nullptr;
    }
    tryView(*view, findings);
    IPlugView* const last = view.take();
    findings.expectEqual("references of a view behind its last release", 0, last->release());
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"view.unattached", "views that are made and released without a window", checkUnattached},
};

} // namespace

std::span<const CConformCase> viewCases()
{
    return kCases;
}

} // namespace tsm
