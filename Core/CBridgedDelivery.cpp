#include "Core/CBridgedDelivery.h"

#include "Core/CObject.h"
#include "Core/CObjectEventBridge.h"

namespace tsm {

void CBridgedDelivery::prepare(CObject& object, const char* procedure)
{
    CObject* owner = object.findThreadOwner();
    bridge = owner ? owner->getEventBridge() : nullptr;
    params.setText("sender", object.getFullName());
    params.setText("event-name", procedure);
    params.setText("listener", object.getFullName());
    params.setInt("listener-id", object.getObjectId());
    params.setText("listener-proc", procedure);
}

CError* CBridgedDelivery::post() const
{
    if (bridge)
        TSM_TRY(bridge->post(params));
    return nullptr;
}

} // namespace tsm
