#pragma once

#include "Core/CAttrValue.h"

namespace tsm {

/// A procedure that events call on a listener: a member function without or with the event's
/// parameters. Both forms are kept as members of `CObject`, so that one record serves all classes.
struct CEventProc {
    using CPlain = CError* (CObject::*)();
    using CWithParams = CError* (CObject::*)(CAttrMap&);

    CPlain plain = nullptr;
    CWithParams withParams = nullptr;
    bool usesParams = false;
};

/// What a class tells of itself: which attributes run code when they are written, and which
/// procedures events may call. Filled once a class by its static `declareClass`, which calls its
/// base's first; read-only from then on.
class CObjectClassInfo : public CCheckedObject {
public:
    /// Runs `handler` on the object each time the attribute is applied.
    template <class T>
    void addAttr(const char* name, CError* (T::*handler)(CAttrValue&))
    {
        attrHandlers[name] = static_cast<CAttrHandler>(handler);
    }
    /// Offers a procedure under `name` to events.
    template <class T>
    void addEvent(const char* name, CError* (T::*procedure)())
    {
        events[name] = {static_cast<CEventProc::CPlain>(procedure), nullptr, false};
    }
    template <class T>
    void addEvent(const char* name, CError* (T::*procedure)(CAttrMap&))
    {
        events[name] = {nullptr, static_cast<CEventProc::CWithParams>(procedure), true};
    }

    /// The handler of an attribute, or null.
    [[nodiscard]] CAttrHandler findAttr(const CString& name) const
    {
        return attrHandlers.get(name, nullptr);
    }
    /// The procedure of that name, or null.
    [[nodiscard]] const CEventProc* findEvent(const CString& name) const
    {
        return events.find(name);
    }

private:
    CMap<CString, CAttrHandler> attrHandlers;
    CMap<CString, CEventProc> events;
};

/// One row of the table of creators: what a tag in a document creates.
struct CCreatorRow {
    const char* tag;
    CObject* (*create)();
    void (*declare)(CObjectClassInfo&);
};

/// The row of a class that is made without arguments.
template <class T>
[[nodiscard]] constexpr CCreatorRow creatorRow(const char* tag)
{
    return {tag, [] { return static_cast<CObject*>(new T); }, &T::declareClass};
}

} // namespace tsm
