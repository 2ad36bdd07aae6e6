#pragma once

#include "Core/CAttrValue.h"
#include "Core/CError.h"
#include "Core/CObjectClassInfo.h"
#include "Core/CPtr.h"

namespace tsm {

class CObject;
class CObjectContext;
class CObjectEventBridge;
class CTemplateInfo;

/// A reference to another object, filled from an attribute by `CObject::findObjectByAttr`. Borrows.
template <class Pointer>
class CTarget;
template <class T>
class CTarget<T*> : public CCheckedObject {
public:
    CTarget& operator=(T* object) noexcept
    {
        target = object;
        return *this;
    }
    [[nodiscard]] T* get() const noexcept { return target; }
    T* operator->() const noexcept { return target; }
    T& operator*() const noexcept { return *target; }
    explicit operator bool() const noexcept { return target != nullptr; }

private:
    T* target = nullptr;
};

/// The root of all that a definition document can name.
///
/// An object has attributes, named children, templates for children made at run time, links that
/// follow other objects' attributes, and events. It comes to life in stages: made and entered in
/// its parent (`addChild`), `init` (attributes read), `initAttrs` (attribute handlers run),
/// `initChilds` (children complete). A parent owns its children; an object ends by `destroyTree`.
///
/// A tree belongs to one thread at a time: the one that owns its bridge or builds it. Nothing here
/// is locked but the event registry of the tree's context.
class CObject : public CCheckedObject {
public:
    enum class EInitState : std::int32_t { Created, Inited, AttrsDone, ChildsDone, Complete };

    CObject();
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject();

    /// First stage: takes over the attributes of the template the object was made from, then the
    /// override attributes. A class reads its own attributes behind the base call.
    [[nodiscard]] virtual CError* init();
    /// Second stage: runs the pending attribute handlers, last written first, then makes the
    /// children of the template.
    [[nodiscard]] virtual CError* initAttrs();
    /// Third stage: all children from the document exist. A class that needs them overrides this.
    [[nodiscard]] virtual CError* initChilds();
    /// Called when a child has been entered, before its stages.
    virtual void onChildAdded(CObject& child);
    /// Takes `child` out of the children, names and templates. It isn't deleted.
    virtual void removeChild(CObject& child);
    /// Ends all subscriptions and attribute links of this object, in both directions.
    virtual void releaseLinks();
    /// Has the parent remove this object; nothing happens without a parent.
    virtual void detachFromParent();
    /// A linked attribute of `sender` has changed: writes `value` to the own attribute `name`.
    [[nodiscard]] virtual CError* onLinkedAttr(CObject& sender, const CString& name,
                                               const CAttrValue& value);
    /// Event "release-child-bridged": destroys the object named by the parameter "sender".
    [[nodiscard]] virtual CError* onReleaseChildBridged(CAttrMap& params);

    /// What a document may say of this class; a derived class calls its base's first.
    static void declareClass(CObjectClassInfo& info);

    // Children

    /// Creates one child and enters it, without running its stages. With `useTemplates` a template
    /// of the name `tag`, of this object, its ancestors or the shared root, gives the class and
    /// later the contents. A name "base#N" asks for an index; names that exist get the next one.
    /// Errors: this object is read-only.
    [[nodiscard]] CError* addChild(CObject*& child, const CString& tag, const CString& name,
                                   bool useTemplates);
    /// Creates one child and runs its stages. `overrideAttrs` (borrowed until the call ends) win
    /// over the template's attributes; `attrs` are written before. A failed child is destroyed.
    /// Errors: no template although one is required, wrong class, those of the stages.
    template <class T>
    [[nodiscard]] CError* createChild(T*& child, const CString& tag, const CString& name,
                                      bool requireTemplate, const CAttrMap* overrideAttrs = nullptr,
                                      const CAttrMap* attrs = nullptr);
    [[nodiscard]] const CArray<CObject*>& getChildren() const noexcept { return children; }
    /// The child that a path segment names ("name", "name#", "name#N", "name#+N", "name#-N"), or
    /// null.
    [[nodiscard]] CObject* findChild(const CString& segment) const;
    /// `releaseLinks`, then the children from the last to the first, then leaves the parent and
    /// deletes this object.
    void destroyTree();
    /// Reads the document of that resource or file into this object; with `doInit` this object's
    /// own stages run too. Errors: those of opening, of the document, of the stages.
    [[nodiscard]] CError* loadXMLData(const CString& name, bool doInit);

    // Attributes

    /// Writes an attribute; text has its {references} expanded and is classified by its form. With
    /// `apply` the attribute's handler runs at once, else at the next `initAttrs`. Nothing happens
    /// on a read-only object or for an empty name. Errors: those of handlers, here and at
    /// dependents.
    [[nodiscard]] CError* setAttr(const CString& name, const CString& text, bool apply);
    [[nodiscard]] CError* setAttr(const CString& name, const CAttrValue& value, bool apply);
    /// Stores a borrowed pointer in an attribute; otherwise as above.
    [[nodiscard]] CError* setAttrPointer(const CString& name, void* pointer, bool apply);
    /// The own attribute, or null.
    template <class Q>
    [[nodiscard]] const CAttrValue* getAttr(const Q& name) const
    {
        return attributes.find(name);
    }
    /// The own attribute converted, or the type's default when it is missing.
    [[nodiscard]] const CString& getAttrString(const char* name) const
    {
        return attributes.getString(name);
    }
    [[nodiscard]] bool getAttrBool(const char* name) const { return attributes.getBool(name); }
    [[nodiscard]] std::int32_t getAttrInt(const char* name) const
    {
        return attributes.getInt(name);
    }
    [[nodiscard]] double getAttrDouble(const char* name) const
    {
        return attributes.getDouble(name);
    }
    /// The attribute "full-name": the path from the root.
    [[nodiscard]] const CString& getFullName() const { return attributes.getString("full-name"); }

    // Paths

    /// The object at a path, or null: "a.b" from the root, ".a" a child, "^a" a sibling,
    /// "shared::a" in the shared tree.
    [[nodiscard]] CObject* findObject(const CString& path);
    [[nodiscard]] const CObject* findObject(const CString& path) const
    {
        return const_cast<CObject*>(this)->findObject(path); // which changes nothing
    }
    /// Errors: nothing at the path, or an object of another class; `object` is null then.
    template <class T>
    [[nodiscard]] CError* findObjectChecked(T*& object, const CString& path);
    /// The object whose path stands in an attribute. Errors: the attribute is empty, and as above.
    template <class T>
    [[nodiscard]] CError* findObjectByAttr(CTarget<T*>& object, const char* attrName);

    // Events

    /// Calls the own procedure `name` at once, on the calling thread. Errors: an unknown name.
    [[nodiscard]] CError* runEvent(const CString& name);
    [[nodiscard]] CError* runEvent(const CString& name, CAttrMap& params);
    /// Sends an event to all who listen to this object under that name. Listeners on the calling
    /// thread run before the call returns, unless `forceBridge` is set; others get the event
    /// through their bridge. Errors: the first one met. [any]
    [[nodiscard]] CError* sendEvent(const CString& eventName, bool forceBridge = false);
    [[nodiscard]] CError* sendEvent(const CString& eventName, CAttrMap& params,
                                    bool forceBridge = false);
    /// Has the own procedure `procName` called at each event `eventName` of the object with the
    /// full name `senderName`, which need not exist yet. An unknown procedure is only logged.
    void listenObject(const CString& senderName, const CString& eventName, const CString& procName);
    void unlistenObject(const CString& senderName, const CString& eventName);

    // State

    [[nodiscard]] CObject* getParent() const noexcept { return parent; }
    [[nodiscard]] CObject* getRoot() const noexcept { return root; }
    [[nodiscard]] CObjectContext* getContext() const noexcept { return context; }
    [[nodiscard]] const CString& getTag() const noexcept { return tag; }
    /// The number of the object in its context, or -1 without one.
    [[nodiscard]] std::int32_t getObjectId() const noexcept { return objectId; }
    [[nodiscard]] EInitState getInitState() const noexcept { return initState; }
    [[nodiscard]] bool getIsReadOnly() const noexcept { return isReadOnly; }
    /// The nearest object, from here upward, that owns a thread; null when there is none.
    [[nodiscard]] CObject* findThreadOwner() noexcept;
    [[nodiscard]] std::uint32_t getOwnerThread() const noexcept { return ownerThread; }
    [[nodiscard]] CObjectEventBridge* getEventBridge() const noexcept { return eventBridge; }

    /// What errors made by this object say of where they happened.
    [[nodiscard]] const CString& errorContext() const { return getFullName(); }
    /// Writes a log line with " // " and the full name behind it.
    void logMessage(const CString& text) const;

protected:
    /// Makes this object the owner of the calling thread for itself and its descendants; `bridge`
    /// is borrowed.
    void ownThread(CObjectEventBridge* bridge) noexcept;

private:
    friend class CApplication;
    friend class CEventRegistry;
    friend class CAttrTextExpander;
    friend class CObjectPath;
    friend class CXMLNodeLoader;

    using CIndexMap = CMap<std::int32_t, CObject*>;

    [[nodiscard]] CError* prepareChild(CObject*& child, const CString& childTag,
                                       const CString& name, bool requireTemplate);
    [[nodiscard]] CError* finishChild(CObject& child, const CAttrMap* overrides,
                                      const CAttrMap* attrs);
    [[nodiscard]] static CError* wrongChildClass(CObject* child, const CString& childTag,
                                                 const CString& name, const CString& where);
    [[nodiscard]] CError* pathError(const char* message, const CString& path);
    [[nodiscard]] CError* attrPathError(const char* message, const char* attrName);
    [[nodiscard]] CString resolvedPath(const CString& path) const;
    [[nodiscard]] CError* findAttrTarget(CObject*& object, const char* attrName);
    [[nodiscard]] CObject* findTemplate(const CString& name) const;
    [[nodiscard]] CString getShortName() const;
    void adopt(CObject& child, const CString& childTag);
    void nameChild(CObject& child, const CString& name);
    [[nodiscard]] CError* loadTemplate(bool isForChildren);
    [[nodiscard]] CError* applyAttr(const CString& name, CAttrValue& value, bool apply);
    [[nodiscard]] CError* runHandler(const CString& name, CAttrValue& value, bool apply);
    [[nodiscard]] CError* tellDependents(const CString& name, CAttrValue& value);
    [[nodiscard]] CError* runPendingHandlers();
    void linkAttr(CObject& source, const CString& sourceAttr, const CString& ownAttr);
    [[nodiscard]] CError* callProcedure(const CEventProc& procedure, CAttrMap& params);

    const CObjectClassInfo* classInfo;
    CAttrMap attributes;
    CAttrValue* pendingHead = nullptr;
    CArray<CObject*> children;
    CObjectEventBridge* eventBridge = nullptr;
    EInitState initState = EInitState::Created;
    bool isReadOnly = false;
    bool isShortcut = false;
    CPtr<CTemplateInfo> templateInfo;
    CObject* instantiatedFrom = nullptr;
    const CAttrMap* overrideAttrs = nullptr;
    CMap<CString, CIndexMap> namedChildren;
    CMap<CString, CMap<CString, CEventProc>> subscriptions;
    CObjectContext* context = nullptr;
    CObject* parent = nullptr;
    CObject* root;
    std::int32_t objectId = -1;
    CString tag;
    CString baseName;
    std::int32_t nameIndex = 0;
    CMap<CString, CObject*> templates;
    std::uint32_t ownerThread = 0;
    bool inheritsThread = true;
    // Who reads attributes of this object: dependent, then own attribute to the dependent's. An
    // empty inner map stands for "all attributes, under their own names".
    CMap<CObject*, CMap<CString, CString>> dependents;
    CSet<CObject*> linkSources;
};

template <class T>
CError* CObject::createChild(T*& child, const CString& childTag, const CString& name,
                             bool requireTemplate, const CAttrMap* overrides, const CAttrMap* attrs)
{
    child = nullptr;
    CObject* made = nullptr;
    TSM_TRY(prepareChild(made, childTag, name, requireTemplate));
    T* typed = dynamic_cast<T*>(made);
    if (!typed)
        return wrongChildClass(made, childTag, name, errorContext());
    TSM_TRY(finishChild(*made, overrides, attrs));
    child = typed;
    return nullptr;
}

template <class T>
CError* CObject::findObjectChecked(T*& object, const CString& path)
{
    object = nullptr;
    CObject* found = findObject(path);
    if (!found)
        return pathError("@tsmstr_CObject_findObjectChecked_FindError "
                         "Unable to find object '%1' ('%2')",
                         path);
    object = dynamic_cast<T*>(found);
    if (!object)
        return pathError("@tsmstr_CObject_findObjectChecked_CastError "
                         "Incompatible type of object '%1' ('%2')",
                         path);
    return nullptr;
}

template <class T>
CError* CObject::findObjectByAttr(CTarget<T*>& object, const char* attrName)
{
    object = nullptr;
    CObject* found = nullptr;
    TSM_TRY(findAttrTarget(found, attrName));
    object = dynamic_cast<T*>(found);
    if (!object)
        return attrPathError("@tsmstr_CObject_findObjectByAttr_CastError Name attribute '%1' "
                             "refers to object '%2' ('%3') of incompatible type.",
                             attrName);
    return nullptr;
}

/// Ends an object with all below it.
struct CTreeEnd {
    template <class T>
    static void end(T* object) noexcept
    {
        object->destroyTree();
    }
};

/// Owns a tree until it is released, so that an early return ends a half-made one.
template <class T>
using CTreePtr = CPtr<T, CTreeEnd>;

} // namespace tsm
