#include "Audio/CAudioParamSharedStorage.h"

namespace tsm {

CError* CAudioParamSharedStorage::init()
{
    TSM_TRY(CObject::init());
    paramName = getAttrString("param");
    if (paramName.isEmpty())
        TSM_FAIL("@tsmstr_CAudioParamSharedStorage_init_InvalidParamName "
                 "Invalid parameter name specified.");
    dataName = getAttrString("data-name");
    if (dataName.isEmpty())
        TSM_FAIL("@tsmstr_CAudioParamSharedStorage_init_InvalidDataName "
                 "Invalid shared data name specified.");
    store = CAppData::findStore(getAttrString("storage-type"));
    if (!store)
        TSM_FAIL("@tsmstr_CAudioParamSharedStorage_init_InvalidStorageType "
                 "Invalid storage type \"%1\" specified.",
                 getAttrString("storage-type"));
    return nullptr;
}

void CAudioParamSharedStorage::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

} // namespace tsm
