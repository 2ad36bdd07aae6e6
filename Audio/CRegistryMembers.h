#pragma once

#include "Audio/CAudioParamCollector.h"
#include "Core/CMap.h"

namespace tsm {

/// The parameters below a registry's path, by the rest of their names, and which of them presets
/// hold. Its user guards it.
class CRegistryMembers : public CCheckedObject {
public:
    struct CPrefixRemap : CTsmMemAllocator {
        CString from;
        CString to;
    };

    /// `path` is the prefix of the members' full names, without a point at its end. [setup]
    void init(CAudioParamCollector& from, const CString& path, bool storesGlobals);
    /// Reads pairs "a=b", divided by blanks: where a full name begins with `a`, the definition's
    /// begins with `b`. Errors: a pair without "=". [setup]
    [[nodiscard]] CError* parseRemaps(const CString& text);

    /// Takes in what the collector has made since the last call.
    void refresh();
    [[nodiscard]] const CMap<CString, CAudioParam*>& getAll() const noexcept { return members; }
    /// The member of that key; made when it is new, and given the description that stands under
    /// its definition's name in the shared tree, if there is one and it has none yet.
    [[nodiscard]] CAudioParam& findOrCreate(const CString& key, CAudioParamContext* context);
    /// The name of a parameter below the registry's path; empty when it stands elsewhere. [any]
    [[nodiscard]] CString keyOf(const CAudioParam& param) const;
    /// Whether presets hold a parameter; with `includePersistent` also those that only the host's
    /// state holds. [any]
    [[nodiscard]] bool isHeld(const CAudioParam& param, bool includePersistent) const;

private:
    [[nodiscard]] CString definitionName(const CString& fullName) const;

    CAudioParamCollector* collector = nullptr;
    CString hierarchy;
    bool isGlobalStorable = false;
    COwnedArray<CPrefixRemap> remaps;
    int knownCount = 0;
    CMap<CString, CAudioParam*> members;
};

} // namespace tsm
