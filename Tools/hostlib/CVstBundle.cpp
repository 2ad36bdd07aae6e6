#include "Tools/hostlib/CVstBundle.h"

#include "Audio/VST/Interfaces/Speakers.h"
#include "Core/CText.h"
#include "Tools/hostlib/CVstString.h"

#include <algorithm>

#include <dlfcn.h>

namespace tsm {

using namespace Steinberg;

namespace {

std::vector<CString> splitCategories(const CString& text)
{
    COwnedArray<CString> pieces;
    splitText(text, '|', pieces);
    std::vector<CString> categories;
    for (const CString& piece : pieces)
        if (!piece.isEmpty())
            categories.push_back(piece);
    return categories;
}

/// The parts that all forms of a class's description have.
template <class Info>
CVstClass begin(const Info& info)
{
    CVstClass made;
    copyId(info.cid, made.id);
    made.cardinality = info.cardinality;
    made.category = fromVstField(info.category);
    return made;
}

CVstClass fromOldest(IPluginFactory& factory, int32 index)
{
    PClassInfo info = {};
    factory.getClassInfo(index, &info);
    CVstClass made = begin(info);
    made.name = fromVstField(info.name);
    return made;
}

bool fromSecond(FUnknown& factory, int32 index, CVstClass& made)
{
    PClassInfo2 info = {};
    const IPtr<IPluginFactory2> second = queryAs<IPluginFactory2>(&factory);
    if (!second || second->getClassInfo2(index, &info) != kResultOk)
        return false;
    made = begin(info);
    made.name = fromVstField(info.name);
    made.flags = info.classFlags;
    made.vendor = fromVstField(info.vendor);
    made.version = fromVstField(info.version);
    made.sdkVersion = fromVstField(info.sdkVersion);
    made.subCategories = splitCategories(fromVstField(info.subCategories));
    return true;
}

bool fromThird(FUnknown& factory, int32 index, CVstClass& made)
{
    PClassInfoW info = {};
    const IPtr<IPluginFactory3> third = queryAs<IPluginFactory3>(&factory);
    if (!third || third->getClassInfoUnicode(index, &info) != kResultOk)
        return false;
    made = begin(info);
    made.name = fromVstText(std::u16string(info.name, std::size(info.name)).c_str());
    made.flags = info.classFlags;
    made.vendor = fromVstText(std::u16string(info.vendor, std::size(info.vendor)).c_str());
    made.version = fromVstText(std::u16string(info.version, std::size(info.version)).c_str());
    made.sdkVersion =
        fromVstText(std::u16string(info.sdkVersion, std::size(info.sdkVersion)).c_str());
    made.subCategories = splitCategories(fromVstField(info.subCategories));
    return true;
}

} // namespace

CVstBundle::~CVstBundle()
{
    if (const IPtr<IPluginFactory3> third = queryAs<IPluginFactory3>(factory.get()))
        third->setHostContext(nullptr);
    factory.reset();
    if (isEntered)
        reinterpret_cast<bool (*)()>(dlsym(handle, "ModuleExit"))();
    if (handle)
        dlclose(handle);
}

std::filesystem::path CVstBundle::defaultPath()
{
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    return program.parent_path().parent_path() / "FerritReelpath.vst3";
}

std::filesystem::path CVstBundle::modulePath(const std::filesystem::path& bundle)
{
    return bundle / "Contents" / "x86_64-linux" / (bundle.stem().string() + ".so");
}

CError* CVstBundle::open(const std::filesystem::path& path, FUnknown* host)
{
    std::error_code failure;
    folder = std::filesystem::canonical(path, failure);
    if (failure)
        TSM_FAIL("can't open '%1': %2", CString::fromUtf8(path.string()),
                 CString::fromUtf8(failure.message()));
    TSM_TRY(load());
    TSM_TRY(enter());
    factory->getFactoryInfo(&factoryInfo);
    readClasses();
    if (const IPtr<IPluginFactory3> third = queryAs<IPluginFactory3>(factory.get()))
        third->setHostContext(host);
    return nullptr;
}

CError* CVstBundle::load()
{
    const std::filesystem::path module = modulePath(folder);
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(module, ignored))
        TSM_FAIL("'%1' is no plug-in bundle: it has no '%2'", CString::fromUtf8(folder.string()),
                 CString::fromUtf8(module.lexically_relative(folder).string()));
    // All symbols at once: a missing one is told here and not in the middle of a run.
    handle = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        TSM_FAIL("can't load '%1': %2", CString::fromUtf8(folder.string()),
                 CString::fromUtf8(dlerror()));
    for (const char* name : {"ModuleEntry", "ModuleExit", "GetPluginFactory"})
        if (!dlsym(handle, name))
            TSM_FAIL("'%1' exports no %2", CString::fromUtf8(folder.string()), name);
    return nullptr;
}

CError* CVstBundle::enter()
{
    const CString name = CString::fromUtf8(folder.string());
    isEntered = reinterpret_cast<bool (*)(void*)>(dlsym(handle, "ModuleEntry"))(handle);
    if (!isEntered)
        TSM_FAIL("the module of '%1' doesn't start", name);
    auto* getFactory = reinterpret_cast<IPluginFactory* (*)()>(dlsym(handle, "GetPluginFactory"));
    factory = IPtr<IPluginFactory>::owned(getFactory());
    if (!factory)
        TSM_FAIL("the module of '%1' has no factory", name);
    return nullptr;
}

void CVstBundle::readClasses()
{
    constexpr int32 kMaxClasses = 1024; // beyond that a count is a fault
    const int32 count = std::clamp(factory->countClasses(), 0, kMaxClasses);
    for (int32 i = 0; i < count; ++i) {
        CVstClass made;
        if (!fromThird(*factory, i, made) && !fromSecond(*factory, i, made))
            made = fromOldest(*factory, i);
        if (made.vendor.isEmpty())
            made.vendor = fromVstField(factoryInfo.vendor);
        classes.push_back(made);
    }
}

CError* CVstBundle::findEffect(const CVstClass*& found) const
{
    const auto place = std::ranges::find_if(
        classes, [](const CVstClass& each) { return each.category == Vst::kVstAudioEffectClass; });
    if (place == classes.end())
        TSM_FAIL("'%1' has no class that processes sound", CString::fromUtf8(folder.string()));
    found = &*place;
    return nullptr;
}

} // namespace tsm
