#include "Core/CResourceMap.h"

#include "Core/CByteOrder.h"

#include <cassert>
#include <limits>

namespace tsm {

CResourceMap& CResourceMap::get()
{
    static CResourceMap map;
    return map;
}

void CResourceMap::addAll(const CResourceEntry* table)
{
    for (; table->data; ++table) {
        const std::uint32_t size = readU32(table->data);
        assert(size <= static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()));
        resources[CString(table->name)] = {table->data + sizeof(size),
                                           static_cast<std::int32_t>(size)};
    }
}

const CResourceMap::CResource* CResourceMap::find(const CString& name) const noexcept
{
    return resources.find(name);
}

} // namespace tsm
