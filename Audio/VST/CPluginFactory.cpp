#include "Audio/VST/CPluginFactory.h"

#include "Audio/VST/VstText.h"

#include <cstddef>
#include <string>

namespace Steinberg {

namespace {

/// The wide form is the narrow one with each unit widened, as all hosts know it of such factories.
template <std::size_t size>
void widen(const char8 (&from)[size], char16 (&to)[size])
{
    std::u16string text;
    for (const char8 unit : fieldText(from))
        text += static_cast<uint8>(unit);
    copyText<char16>(text, to);
}

IPtr<FUnknown> make(CPluginFactory::CreateFunction create, void* context)
{
    try {
        return IPtr<FUnknown>::owned(create(context));
    } catch (...) {
        return {}; // the host may be built by another compiler
    }
}

} // namespace

CPluginFactory::CPluginFactory(const PFactoryInfo& description) : factoryInfo(description)
{
    factoryInfo.flags |= PFactoryInfo::kUnicode;
}

void CPluginFactory::registerClass(const PClassInfo2& info, CreateFunction create, void* context)
{
    classes.push_back({info, create, context});
}

tresult CPluginFactory::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IPluginFactory>(wanted, obj, this) ||
        giveInterface<IPluginFactory2>(wanted, obj, this) ||
        giveInterface<IPluginFactory3>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

tresult CPluginFactory::getFactoryInfo(PFactoryInfo* info)
{
    if (info)
        *info = factoryInfo;
    return kResultOk;
}

int32 CPluginFactory::countClasses()
{
    return static_cast<int32>(classes.size());
}

tresult CPluginFactory::getClassInfo(int32 index, PClassInfo* info)
{
    const CClassEntry* entry = at(index);
    if (!entry || !info)
        return kInvalidArgument;
    *info = {};
    copyId(entry->info.cid, info->cid);
    info->cardinality = entry->info.cardinality;
    copyText(fieldText(entry->info.category), info->category);
    copyText(fieldText(entry->info.name), info->name);
    return kResultOk;
}

tresult CPluginFactory::getClassInfo2(int32 index, PClassInfo2* info)
{
    const CClassEntry* entry = at(index);
    if (!entry || !info)
        return kInvalidArgument;
    *info = entry->info;
    return kResultOk;
}

tresult CPluginFactory::getClassInfoUnicode(int32 index, PClassInfoW* info)
{
    const CClassEntry* entry = at(index);
    if (!entry || !info)
        return kInvalidArgument;
    *info = {};
    copyId(entry->info.cid, info->cid);
    info->cardinality = entry->info.cardinality;
    copyText(fieldText(entry->info.category), info->category);
    widen(entry->info.name, info->name);
    info->classFlags = entry->info.classFlags;
    copyText(fieldText(entry->info.subCategories), info->subCategories);
    widen(entry->info.vendor, info->vendor);
    widen(entry->info.version, info->version);
    widen(entry->info.sdkVersion, info->sdkVersion);
    return kResultOk;
}

tresult CPluginFactory::createInstance(FIDString cid, FIDString wanted, void** obj)
{
    if (!obj)
        return kInvalidArgument;
    *obj = nullptr;
    const CClassEntry* entry = find(cid);
    if (!entry || !wanted)
        return kNoInterface;
    const IPtr<FUnknown> object = make(entry->create, entry->context);
    return object ? object->queryInterface(wanted, obj) : kOutOfMemory;
}

tresult CPluginFactory::setHostContext(FUnknown* context)
{
    runLoop = queryAs<Linux::IRunLoop>(context);
    return kResultTrue;
}

const CPluginFactory::CClassEntry* CPluginFactory::at(int32 index) const
{
    const bool isThere = index >= 0 && static_cast<std::size_t>(index) < classes.size();
    return isThere ? &classes[static_cast<std::size_t>(index)] : nullptr;
}

const CPluginFactory::CClassEntry* CPluginFactory::find(FIDString cid) const
{
    for (const CClassEntry& entry : classes)
        if (isSameId(entry.info.cid, cid))
            return &entry;
    return nullptr;
}

} // namespace Steinberg
