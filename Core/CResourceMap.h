#pragma once

#include "Core/CMap.h"
#include "Core/CResourceEntry.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

/// The embedded resources of the process by name. Filled while the module starts and only read
/// from then on, so there is no lock.
class CResourceMap : public CCheckedObject {
public:
    struct CResource {
        const std::uint8_t* data = nullptr;
        std::int32_t size = 0;
    };

    [[nodiscard]] static CResourceMap& get();

    /// Enters all rows up to the one without data; the blocks they point to must stay. A name that
    /// is there already gets the new data. [setup]
    void addAll(const CResourceEntry* table);
    /// Takes one name out again; a name that isn't there is no error. [setup]
    void remove(const CString& name) { resources.remove(name); }
    /// The resource of that name, or null. [any]
    [[nodiscard]] const CResource* find(const CString& name) const noexcept;

private:
    CMap<CString, CResource> resources;
};

} // namespace tsm
