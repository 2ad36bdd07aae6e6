#include "Audio/CRegistryListener.h"

namespace tsm {

void CRegistryListener::onUpdate(const CUpdateMessage& message)
{
    onRegistryUpdate(static_cast<const CRegistryMessage&>(message).update, message.sender);
}

} // namespace tsm
