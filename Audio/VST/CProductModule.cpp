#include "Audio/VST/CProductModule.h"

#include "Audio/ProductCreators.h"
#include "Audio/VST/CAudioWrapperVST3.h"
#include "Audio/VST/CPluginFactory.h"
#include "Audio/VST/VstText.h"
#include "Core/CSystem.h"

#include <cstring>
#include <mutex>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

struct CFramework {
    std::mutex lock;
    std::shared_ptr<tsm::CApplication> application;
    std::weak_ptr<tsm::CApplication> last; // of a former entry, while its instances live
};

CFramework& framework()
{
    static CFramework theFramework;
    return theFramework;
}

template <std::size_t size>
void copyAttribute(const tsm::CObject& project, const char* name, char8 (&field)[size])
{
    copyText(std::string_view(project.getAttrString(name).toUtf8()), field);
}

} // namespace

void CProductModule::begin()
{
    CFramework& own = framework();
    const std::lock_guard guard(own.lock);
    own.application = own.last.lock();
    if (own.application)
        return;
    own.application = std::make_shared<tsm::CApplication>();
    own.last = own.application;
    tsm::handleError(tsm::startProduct(*own.application));
}

void CProductModule::end()
{
    std::shared_ptr<tsm::CApplication> ended; // goes behind the lock
    CFramework& own = framework();
    const std::lock_guard guard(own.lock);
    ended.swap(own.application);
}

std::shared_ptr<tsm::CApplication> CProductModule::shareApplication()
{
    CFramework& own = framework();
    const std::lock_guard guard(own.lock);
    return own.application;
}

bool CProductModule::describe(const tsm::CObject& project, PFactoryInfo& factory,
                              PClassInfo2& plugin)
{
    factory = {};
    copyAttribute(project, "app-vendor", factory.vendor);
    copyAttribute(project, "app-vendor-url", factory.url);
    copyAttribute(project, "app-vendor-email", factory.email);
    factory.flags = PFactoryInfo::kUnicode;

    plugin = {};
    std::uint8_t classId[sizeof(TUID)];
    if (!tsm::CSystem::parseUUID(project.getAttrString("plugin-uuid"), classId))
        return false;
    std::memcpy(plugin.cid, classId, sizeof classId);
    plugin.cardinality = PClassInfo::kManyInstances;
    copyText(std::string_view(kVstAudioEffectClass), plugin.category);
    copyAttribute(project, "app-name", plugin.name);
    copyAttribute(project, "plugin-category-vst3", plugin.subCategories);
    copyAttribute(project, "app-version", plugin.version);
    copyText(std::string_view("VST 3.6.5"), plugin.sdkVersion);
    return true;
}

IPluginFactory* CProductModule::makeFactory()
{
    const std::shared_ptr<tsm::CApplication> application = shareApplication();
    tsm::CObject* const root = application ? application->getSharedRoot() : nullptr;
    const tsm::CObject* const project = root ? root->findObject("project") : nullptr;
    PFactoryInfo description;
    PClassInfo2 plugin;
    if (!project || !describe(*project, description, plugin))
        return nullptr;
    auto* const factory = new CPluginFactory(description);
    factory->registerClass(plugin, &CAudioWrapperVST3::createInstance);
    return factory;
}
