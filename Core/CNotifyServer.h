#pragma once

#include "Core/CAttrValue.h"

#include <cstdint>

namespace tsm {

/// Delivers events into trees that may have gone away meanwhile.
class CNotifyServer {
public:
    /// Sends an event in the name of an object to its listeners, if a context of that number still
    /// exists; nothing happens otherwise. An error ends in the log. [any] Contexts of all trees are
    /// kept from ending while the event is handed on.
    static void notifyContext(std::uint32_t contextId, const CString& senderName,
                              const CString& eventName, CAttrMap& params);
};

} // namespace tsm
