#include "Core/CSharedAttribute.h"

namespace tsm {

void CSharedAttributeListener::onUpdate(const CUpdateMessage&)
{
    getOwner()->deliverUpdate();
}

CSharedAttribute::CSharedAttribute() : listener(this) {}

void CSharedAttribute::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
    info.addEvent("update", &CSharedAttribute::onUpdateEvent);
}

CError* CSharedAttribute::init()
{
    TSM_TRY(CObject::init());
    store = CAppData::findStore(getAttrString("storage-type"));
    if (!store)
        TSM_FAIL("@tsmstr_CSharedAttribute_init_InvalidStorageType "
                 "Invalid storage type \"%1\" specified.",
                 getAttrString("storage-type"));
    attribute = getAttrString("attribute");
    if (attribute.isEmpty())
        TSM_FAIL("@tsmstr_CSharedAttribute_init_NoAttribute "
                 "No attached attribute name specified.");
    key = getAttrString("data-name");
    if (key.isEmpty())
        key = keyFromName();
    defValue = getAttrString("def-value");
    delivery.prepare(*this, "update");
    listener.attach(store, key);
    TSM_TRY(reloadValue());
    return nullptr;
}

CString CSharedAttribute::keyFromName() const
{
    return getFullName().substring(getFullName().findLast('.') + 1);
}

void CSharedAttribute::deliverUpdate()
{
    handleError(delivery.post());
}

CError* CSharedAttribute::onUpdateEvent()
{
    TSM_TRY(reloadValue());
    return nullptr;
}

CError* CSharedAttribute::reloadValue()
{
    TSM_TRY(setAttr(attribute, store->readText(key, defValue), true));
    return nullptr;
}

void CSharedAttribute::setValue(const CString& text)
{
    store->writeText(key, text, this);
}

} // namespace tsm
