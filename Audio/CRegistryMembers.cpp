#include "Audio/CRegistryMembers.h"

#include "Audio/CAudioParamDef.h"
#include "Core/CApplication.h"
#include "Core/CText.h"

namespace tsm {

namespace {

/// What of a full name stands behind a path and its point; empty when it isn't below the path.
CString relativeName(const CString& fullName, const CString& path)
{
    const int length = path.getLength();
    if (fullName.getLength() <= length + 1 || fullName.at(length) != '.' ||
        !(fullName.substring(0, length) == path))
        return {};
    return fullName.substring(length + 1);
}

} // namespace

void CRegistryMembers::init(CAudioParamCollector& from, const CString& path, bool storesGlobals)
{
    collector = &from;
    hierarchy = path;
    isGlobalStorable = storesGlobals;
}

CError* CRegistryMembers::parseRemaps(const CString& text)
{
    COwnedArray<CString> pairs;
    splitText(text, ' ', pairs);
    for (const CString& pair : pairs) {
        if (pair.isEmpty())
            continue;
        const int equals = pair.find(static_cast<std::uint16_t>('='));
        if (equals < 0)
            TSM_FAIL("@tsmstr_CAudioParamRegistry_init_InvalidRemap Invalid remapping string '%1' "
                     "defined.",
                     pair);
        CPrefixRemap& remap = remaps.create();
        remap.from = pair.substring(0, equals);
        remap.to = pair.substring(equals + 1);
    }
    return nullptr;
}

void CRegistryMembers::refresh()
{
    const int count = collector->getParamCount();
    if (count == knownCount)
        return;
    knownCount = count;
    CArray<CAudioParam*> all;
    collector->listParams(all);
    for (CAudioParam* param : all) {
        const CString key = keyOf(*param);
        if (!key.isEmpty())
            members[key] = param;
    }
}

CAudioParam& CRegistryMembers::findOrCreate(const CString& key, CAudioParamContext* context)
{
    CAudioParam* param = members.get(key, nullptr);
    if (!param) {
        param = &collector->findOrCreate(hierarchy + "." + key);
        members[key] = param;
    }
    if (!param->getInfo()) {
        CObject* const shared = CApplication::get()->getSharedRoot();
        const CString definition = definitionName(param->getName());
        const auto* const def = dynamic_cast<const CAudioParamDef*>(shared->findObject(definition));
        // By its own name only: under another spelling of the path ("gain#0") a preset would make
        // a second parameter of the same kind, which all later presets would hold.
        if (def && def->hasStorage() && def->getFullName() == definition)
            param->attachInfo(def->getInfo(), context);
    }
    return *param;
}

CString CRegistryMembers::definitionName(const CString& fullName) const
{
    for (const CPrefixRemap& remap : remaps) {
        const CString rest = relativeName(fullName, remap.from);
        if (!rest.isEmpty())
            return remap.to + "." + rest;
    }
    return fullName;
}

CString CRegistryMembers::keyOf(const CAudioParam& param) const
{
    return relativeName(param.getName(), hierarchy);
}

bool CRegistryMembers::isHeld(const CAudioParam& param, bool includePersistent) const
{
    const CAudioParamInfo* const info = param.getInfo();
    return info && (info->isStorable || (includePersistent && info->isPersistent) ||
                    (isGlobalStorable && info->isGlobal));
}

} // namespace tsm
