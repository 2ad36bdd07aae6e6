#include "Audio/CParamListener.h"

namespace tsm {

void CParamListener::onUpdate(const CUpdateMessage& message)
{
    // Only collectors have these listeners, and they send nothing else.
    const auto& update = static_cast<const CParamUpdateMessage&>(message);
    onParamChanged(update.sender, *update.param, *update.change);
}

} // namespace tsm
