#include "Other/CFileSetObject.h"

#include <atomic>

namespace tsm {

CError* CFileSetObject::init()
{
    static std::atomic<std::uint64_t> lastSerial = 0;
    TSM_TRY(CObject::init());
    serial = ++lastSerial;
    TSM_TRY(set.loadResource(getAttrString("file")));
    return nullptr;
}

} // namespace tsm
