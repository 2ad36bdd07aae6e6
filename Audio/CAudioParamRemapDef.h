#pragma once

#include "Core/CObject.h"

namespace tsm {

/// Names of parameters that a process forwards to others.
class CAudioParamRemapDef : public CObject {
public:
    struct CPair : CTsmMemAllocator {
        CString origName;
        CString newName; // as written; see resolveName
    };

    /// Reads the pair of the attributes `orig` and `new`.
    [[nodiscard]] CError* init() override;
    /// Reads the list in the child `content`. Errors: an entry that isn't "a = b", no pair at all.
    [[nodiscard]] CError* initChilds() override;
    static void declareClass(CObjectClassInfo& info);

    [[nodiscard]] const COwnedArray<CPair>& getPairs() const noexcept { return pairs; }

private:
    void addPair(const CString& origName, const CString& newName);
    [[nodiscard]] CError* readList(const CString& text);
    [[nodiscard]] CError* readEntry(const CString& entry);

    COwnedArray<CPair> pairs;
};

} // namespace tsm
