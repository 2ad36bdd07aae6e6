#include "Tools/conform/CPlugin.h"

#include "Audio/VST/Interfaces/Speakers.h"

#include <algorithm>

namespace tsm {

CError* CPlugin::open()
{
    auto opened = std::make_unique<CVstBundle>();
    TSM_TRY(opened->open(path, context->asUnknown()));
    if (className.empty()) {
        TSM_TRY(opened->findEffect(effect));
    } else {
        const auto& classes = opened->getClasses();
        const auto place = std::ranges::find_if(classes, [this](const CVstClass& each) {
            return each.name == CString::fromUtf8(className) &&
                   each.category == Steinberg::Vst::kVstAudioEffectClass;
        });
        if (place == classes.end())
            TSM_FAIL("'%1' has no class '%2' that processes sound", CString::fromUtf8(path),
                     CString::fromUtf8(className));
        effect = &*place;
    }
    bundle = std::move(opened);
    return nullptr;
}

void CPlugin::close()
{
    effect = nullptr;
    bundle.reset();
}

CError* CPlugin::make(CVstInstance& instance) const
{
    return instance.create(*bundle, *effect, context->asUnknown());
}

CError* CPlugin::start(CVstInstance& instance, const CVstSetUp& setUp) const
{
    TSM_TRY(make(instance));
    TSM_TRY(instance.setUp(setUp));
    return instance.start();
}

} // namespace tsm
