#pragma once

#include "Core/CObject.h"
#include "Other/CFileSet.h"

#include <cstdint>

namespace tsm {

/// A file set as a document names it. Tag `fileset`; the attribute `file` is the name of the
/// resource, or else of the file, that holds it.
class CFileSetObject : public CObject {
public:
    /// Errors: no such resource or file, those of the set.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }

    [[nodiscard]] const CFileSet& getSet() const noexcept { return set; }
    /// A number that no other set of the process has had: what was derived from an item is known
    /// by it, also after the set has gone. [any]
    [[nodiscard]] std::uint64_t getSerial() const noexcept { return serial; }

private:
    CFileSet set;
    std::uint64_t serial = 0;
};

} // namespace tsm
