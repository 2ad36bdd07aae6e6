#pragma once

#include "Core/CAttrValue.h"

namespace tsm {

class CObject;
class CObjectEventBridge;

/// Calls one procedure of an object on the thread of its tree, from any thread. What that takes of
/// the tree is read once, since other threads may not walk it.
class CBridgedDelivery : public CCheckedObject {
public:
    /// Without an event bridge above `object`, nothing will be delivered. On the object's thread,
    /// while no other thread posts.
    void prepare(CObject& object, const char* procedure);
    /// Has the nearest bridge call the procedure on a later turn of its thread's loop. The object
    /// lives until the call returns; if it ends later, the delivery falls away. Errors: the queue's
    /// refusal. [any]
    [[nodiscard]] CError* post() const;

private:
    CObjectEventBridge* bridge = nullptr;
    CAttrMap params;
};

} // namespace tsm
