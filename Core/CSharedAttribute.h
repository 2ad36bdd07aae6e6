#pragma once

#include "Core/CAppData.h"
#include "Core/CBridgedDelivery.h"
#include "Core/CObject.h"

namespace tsm {

class CSharedAttribute;

/// Has its owner follow the stored value, on the thread of the owner's tree.
class CSharedAttributeListener : public CAppDataListener<CSharedAttribute> {
public:
    using CAppDataListener::CAppDataListener;
    ~CSharedAttributeListener() override { detach(); }
    void onUpdate(const CUpdateMessage& message) override;
};

/// Ties an attribute of this object to a stored text: the attribute shows the item's value, or the
/// default while there is none, and follows it whoever writes it. Others read it through a link.
/// Tag `core:shared-attribute`; `storage-type` and `data-name` name the item, `attribute` the
/// attribute, `def-value` the default. Without `data-name` the object's own name is the key.
///
/// It follows on the thread of the nearest event bridge above it; below none it doesn't follow.
class CSharedAttribute : public CObject {
public:
    CSharedAttribute();
    /// Errors: no such store, no attribute's name, those of the attribute's followers.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

    /// Brings the attribute up to date. Errors: those of its followers.
    [[nodiscard]] virtual CError* reloadValue();
    /// Writes the stored value; the attribute follows by the notification. [any]
    void setValue(const CString& text);

private:
    friend class CSharedAttributeListener;

    [[nodiscard]] CString keyFromName() const;
    void deliverUpdate();
    [[nodiscard]] CError* onUpdateEvent();

    CAppData* store = nullptr;
    CString attribute;
    CString key;
    CString defValue;
    CBridgedDelivery delivery;
    CSharedAttributeListener listener; // last: it leaves the store before the rest goes
};

} // namespace tsm
