#include "Audio/CAudioCCTable.h"

#include "Audio/CAudioExtParam.h"
#include "Core/CMemoryReader.h"

namespace tsm {
namespace {

constexpr const char* kDataName = "ccmap";

CAppData& localStore()
{
    return CAppData::getStore(CAppData::EStore::Local);
}

CError* readItem(const CByteBuffer& item, CString (&entries)[CAudioCCTable::kControllerCount])
{
    CMemoryReader reader(item);
    std::uint32_t count = 0;
    TSM_TRY(reader.readValue(count));
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint32_t controller = 0;
        CString path;
        TSM_TRY(reader.readValue(controller));
        TSM_TRY(reader.readString(path));
        if (controller < CAudioCCTable::kControllerCount)
            entries[controller] = path;
    }
    return nullptr;
}

} // namespace

CError* CAudioCCTable::init()
{
    TSM_TRY(CObject::init());
    attach(&localStore(), kDataName);
    load();
    return nullptr;
}

void CAudioCCTable::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

void CAudioCCTable::onUpdate(const CUpdateMessage&)
{
    load();
}

void CAudioCCTable::load()
{
    // Under the lock from the reading on, so that an older item doesn't take a newer one's place.
    const CLockScope hold(lock);
    for (CString& path : paths)
        path.clear();
    CByteBuffer item;
    localStore().readData(kDataName, item, kRawDataId);
    if (!item.isEmpty())
        handleError(readItem(item, paths)); // what came before a damage stands
}

CAudioParam* CAudioCCTable::findParam(int controller)
{
    if (controller < 0 || controller >= kControllerCount)
        return nullptr;
    CString path;
    {
        const CLockScope hold(lock);
        path = paths[controller];
    }
    if (path.isEmpty())
        return nullptr;
    const auto* found = dynamic_cast<const CAudioExtParam*>(findObject(path));
    return found ? &found->getParam() : nullptr;
}

} // namespace tsm
