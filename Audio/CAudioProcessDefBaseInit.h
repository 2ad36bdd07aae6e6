#pragma once

#include "Audio/CAudioParamAllocDef.h"
#include "Core/CObject.h"

namespace tsm {

class CAudioParamDef;
class CAudioParamFilterDef;
class CAudioParamRemapDef;
class CAudioParamSharedStorage;

/// What a process definition says in its children: parameters, their slots in modules, names that
/// are sent on, stored settings, filters. Children of a `core:object` count too, under the object's
/// name; it is a scope of names and no process.
class CAudioProcessDefBaseInit : public CObject {
public:
    struct CNamedParam : CTsmMemAllocator {
        const CAudioParamDef* def = nullptr;
        CString relativeName; // ".name" or ".scope.name"
    };

    struct CNamedStorage : CTsmMemAllocator {
        const CAudioParamSharedStorage* def = nullptr;
        CString relativeName; // of the parameter, as above
    };

    /// Collects the children; of two slots with one index the later counts.
    [[nodiscard]] CError* initChilds() override;
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }

    /// By index.
    [[nodiscard]] const CMap<std::int32_t, const CAudioParamAllocDef*>& getAllocs() const noexcept
    {
        return allocs;
    }
    [[nodiscard]] const CArray<const CAudioParamRemapDef*>& getRemaps() const noexcept
    {
        return remaps;
    }
    [[nodiscard]] const CArray<const CAudioParamFilterDef*>& getFilterDefs() const noexcept
    {
        return filterDefs;
    }
    [[nodiscard]] const COwnedArray<CNamedParam>& getParamDefs() const noexcept
    {
        return paramDefs;
    }
    [[nodiscard]] const COwnedArray<CNamedStorage>& getSharedStorages() const noexcept
    {
        return sharedStorages;
    }

private:
    void takeChild(CObject& child, const CString& scope);
    void takeScope(CObject& scope);

    CMap<std::int32_t, const CAudioParamAllocDef*> allocs;
    CArray<const CAudioParamRemapDef*> remaps;
    CArray<const CAudioParamFilterDef*> filterDefs;
    COwnedArray<CNamedParam> paramDefs;
    COwnedArray<CNamedStorage> sharedStorages;
};

/// The last component of an object's full name.
[[nodiscard]] CString lastName(const CObject& object);

} // namespace tsm
