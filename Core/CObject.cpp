#include "Core/CObject.h"

#include "Core/CApplication.h"
#include "Core/CAttrTextExpander.h"
#include "Core/CLog.h"
#include "Core/CObjectContext.h"
#include "Core/CObjectPath.h"
#include "Core/CResourceReader.h"
#include "Core/CTemplateInfo.h"
#include "Core/CText.h"
#include "Core/CXMLNodeLoader.h"
#include "Platform/CClock.h"
#include "Platform/CThreadId.h"

#include <cassert>

namespace tsm {
namespace {

const CObjectClassInfo& defaultClassInfo()
{
    static const CObjectClassInfo info = [] {
        CObjectClassInfo made;
        CObject::declareClass(made);
        return made;
    }();
    return info;
}

// Leaves room for as many children again behind the largest index that a name may ask for.
constexpr std::int64_t kMaxIndex = 0x3FFFFFFF;

/// Reads the index behind a "#": decimal digits only, leading zeros allowed.
bool parseIndex(const CString& text, std::int32_t& index)
{
    std::int64_t value = 0;
    for (int i = 0; i < text.getLength(); ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        value = value * 10 + (text[i] - '0');
        if (value > kMaxIndex)
            return false;
    }
    index = static_cast<std::int32_t>(value);
    return !text.isEmpty();
}

} // namespace

// Life

CObject::CObject() : classInfo(&defaultClassInfo()), root(this) {}

CObject::~CObject()
{
    assert(children.isEmpty() && "objects end through destroyTree");
    if (root == this)
        delete context;
}

void CObject::declareClass(CObjectClassInfo& info)
{
    info.addEvent("release-child-bridged", &CObject::onReleaseChildBridged);
}

CError* CObject::init()
{
    if (instantiatedFrom)
        TSM_TRY(loadTemplate(false));
    if (overrideAttrs)
        for (const auto& entry : *overrideAttrs)
            TSM_TRY(setAttr(entry.key, entry.value, false));
    initState = EInitState::Inited;
    return nullptr;
}

CError* CObject::initAttrs()
{
    TSM_TRY(runPendingHandlers());
    initState = EInitState::AttrsDone;
    if (instantiatedFrom)
        TSM_TRY(loadTemplate(true));
    return nullptr;
}

CError* CObject::initChilds()
{
    initState = EInitState::ChildsDone;
    const CApplication* application = CApplication::get();
    isReadOnly = !application || !application->getSharedRoot();
    return nullptr;
}

CError* CObject::loadTemplate(bool isForChildren)
{
    const CTemplateInfo& info = *instantiatedFrom->templateInfo;
    CXMLNodeLoader loader(info.getDocument(), info.getBody(), info.getBodyEnd());
    TSM_TRY(loader.load(*this, {.doInit = false,
                                .skipHeader = true,
                                .skipAttrs = isForChildren,
                                .skipChildren = !isForChildren}));
    return nullptr;
}

void CObject::releaseLinks()
{
    while (const auto* sender = subscriptions.first()) {
        const CString senderName = sender->key;
        const CString eventName = sender->value.first()->key;
        unlistenObject(senderName, eventName);
    }
    for (const auto& source : linkSources)
        source.key->dependents.remove(this);
    linkSources.clear();
    for (const auto& dependent : dependents)
        dependent.key->linkSources.remove(this);
    dependents.clear();
}

void CObject::detachFromParent()
{
    if (parent)
        parent->removeChild(*this);
}

void CObject::destroyTree()
{
    releaseLinks();
    const CArray<CObject*> copy(children);
    for (int i = copy.getCount() - 1; i >= 0; --i)
        copy[i]->destroyTree();
    detachFromParent();
    delete this;
}

// Children

void CObject::onChildAdded(CObject&) {}

void CObject::removeChild(CObject& child)
{
    const int index = children.indexOf(&child);
    if (index < 0)
        return;
    children.remove(index);
    if (CIndexMap* indices = namedChildren.find(child.baseName)) {
        indices->remove(child.nameIndex);
        if (indices->isEmpty())
            namedChildren.remove(child.baseName);
    }
    const CString name = child.getShortName();
    if (templates.get(name) == &child)
        templates.remove(name);
    child.parent = nullptr;
}

CObject* CObject::findTemplate(const CString& name) const
{
    for (const CObject* object = this; object; object = object->parent)
        if (CObject* found = object->templates.get(name))
            return found;
    const CApplication* application = CApplication::get();
    const CObject* shared = application ? application->getSharedRoot() : nullptr;
    return shared ? shared->templates.get(name) : nullptr;
}

CError* CObject::addChild(CObject*& child, const CString& childTag, const CString& name,
                          bool useTemplates)
{
    child = nullptr;
    if (isReadOnly)
        TSM_FAIL("@tsmstr_CObject_addChild_ReadOnly Error adding child to read-only object.");
    CObject* source = useTemplates ? findTemplate(childTag) : nullptr;
    const CString& classTag = source ? source->templateInfo->getClassTag() : childTag;
    const CApplication* application = CApplication::get();
    const auto* creator = application ? application->findCreator(classTag) : nullptr;
    if (creator) {
        child = creator->create();
        child->classInfo = creator->classInfo;
    } else {
        child = new CObject;
        if (classTag != "template" && classTag != "content")
            logLine(CString("Creating CObject '") + name + "' (tag '" + classTag + "')");
    }
    child->instantiatedFrom = source;
    adopt(*child, childTag);
    nameChild(*child, name);
    onChildAdded(*child);
    return nullptr;
}

void CObject::adopt(CObject& child, const CString& childTag)
{
    child.parent = this;
    child.context = context;
    child.root = root;
    child.objectId = context ? context->nextObjectId() : -1;
    child.tag = childTag;
    child.isShortcut = tag == "core:shortcut";
}

void CObject::nameChild(CObject& child, const CString& name)
{
    const int mark = name.find('#');
    child.baseName = mark < 0 ? name : name.substring(0, mark);
    std::int32_t index = 0;
    if (mark >= 0)
        (void)parseIndex(name.substring(mark + 1), index); // 0 when it is no number
    CIndexMap& indices = namedChildren[child.baseName];
    if (const auto* largest = indices.last())
        index = largest->key + 1;
    child.nameIndex = index;
    indices[index] = &child;
    children.add(&child);

    const CString& ownName = getFullName();
    const CString childName = child.getShortName();
    child.attributes.setText("full-name",
                             ownName.isEmpty() ? childName : ownName + "." + childName);
}

CString CObject::getShortName() const
{
    return nameIndex == 0 ? baseName : baseName + "#" + toString(nameIndex);
}

CObject* CObject::findChild(const CString& segmentText) const
{
    const int mark = segmentText.find('#');
    const CIndexMap* indices =
        namedChildren.find(mark < 0 ? segmentText : segmentText.substring(0, mark));
    if (!indices)
        return nullptr;
    if (mark < 0)
        return indices->first()->value;
    const CString suffix = segmentText.substring(mark + 1);
    if (suffix.isEmpty())
        return indices->last()->value;

    const bool isUp = suffix[0] == '+';
    const bool isDown = suffix[0] == '-';
    std::int32_t number = 0;
    if (!parseIndex(isUp || isDown ? suffix.substring(1) : suffix, number))
        return nullptr;
    if (!isUp && !isDown)
        return indices->get(number);
    if (number >= indices->getCount())
        return nullptr;
    auto* node = isUp ? indices->first() : indices->last();
    while (number-- > 0)
        node = isUp ? CIndexMap::next(node) : CIndexMap::previous(node);
    return node->value;
}

CError* CObject::prepareChild(CObject*& child, const CString& childTag, const CString& name,
                              bool requireTemplate)
{
    if (requireTemplate && !findTemplate(childTag))
        TSM_FAIL("@tsmstr_CObject_createChild_NoTemplate Run-time template '%1' does not exist.",
                 childTag);
    TSM_TRY(addChild(child, childTag, name, true));
    return nullptr;
}

CError* CObject::wrongChildClass(CObject* child, const CString& childTag, const CString& name,
                                 const CString& where)
{
    child->destroyTree();
    return addError(nullptr, __FILE__, __LINE__, where,
                    "@tsmstr_CObject_createChild_InvalidObjectClass Object of invalid class "
                    "created (child tag '%1', child name '%2').",
                    childTag, name);
}

CError* CObject::finishChild(CObject& child, const CAttrMap* overrides, const CAttrMap* attrs)
{
    CTreePtr<CObject> half(&child);
    child.overrideAttrs = overrides;
    if (attrs)
        for (const auto& entry : *attrs)
            TSM_TRY(child.setAttr(entry.key, entry.value, false));
    TSM_TRY(child.init());
    TSM_TRY(child.initAttrs());
    TSM_TRY(child.initChilds());
    child.overrideAttrs = nullptr;
    (void)half.release();
    return nullptr;
}

CError* CObject::loadXMLData(const CString& name, bool doInit)
{
    const double began = CClock::seconds();
    CResourceReader reader;
    TSM_TRY(reader.open(name));
    CXMLData* document = nullptr;
    TSM_TRY(CXMLData::load(document, reader));
    const CXMLDataRef data(document);
    CXMLNodeLoader loader(data, data->getNodes(), data->getNodesEnd());
    TSM_TRY(loader.load(*this, {.doInit = doInit, .skipHeader = true}));
    const double now = CClock::seconds();
    const std::string fullName = getFullName().toUtf8();
    logFormat("loadXMLData \"%s\" init time: %.4f s @ %.4f s%s%s", name.toUtf8().c_str(),
              now - began, now, fullName.empty() ? "" : " // ", fullName.c_str());
    return nullptr;
}

// Attributes

CError* CObject::setAttr(const CString& name, const CString& text, bool apply)
{
    if (isReadOnly || name.isEmpty())
        return nullptr;
    const CString expanded = CAttrTextExpander::expand(*this, name, text);
    CAttrValue& value = attributes[name];
    value.setText(expanded);
    return applyAttr(name, value, apply);
}

CError* CObject::setAttr(const CString& name, const CAttrValue& value, bool apply)
{
    if (value.getType() == EAttrType::String)
        return setAttr(name, value.asString(), apply);
    if (isReadOnly || name.isEmpty())
        return nullptr;
    CAttrValue& own = attributes[name];
    own = value;
    return applyAttr(name, own, apply);
}

CError* CObject::setAttrPointer(const CString& name, void* pointer, bool apply)
{
    if (isReadOnly || name.isEmpty())
        return nullptr;
    CAttrValue& value = attributes[name];
    value.setPointer(pointer);
    return applyAttr(name, value, apply);
}

CError* CObject::applyAttr(const CString& name, CAttrValue& value, bool apply)
{
    TSM_TRY(runHandler(name, value, apply));
    TSM_TRY(tellDependents(name, value));
    return nullptr;
}

CError* CObject::runHandler(const CString& name, CAttrValue& value, bool apply)
{
    if (!(value.flags & CAttrValue::kHandlerKnown)) {
        value.handler = classInfo->findAttr(name);
        if (!value.handler)
            return nullptr;
        value.flags |= CAttrValue::kHandlerKnown;
    }
    if (apply)
        return (this->*value.handler)(value);
    if (!(value.flags & CAttrValue::kPending)) {
        value.nextPending = pendingHead;
        pendingHead = &value;
        value.flags |= CAttrValue::kPending;
    }
    return nullptr;
}

CError* CObject::runPendingHandlers()
{
    if (isReadOnly)
        return nullptr;
    CError* error = nullptr;
    CAttrValue* value = std::exchange(pendingHead, nullptr);
    while (value) {
        CAttrValue* following = std::exchange(value->nextPending, nullptr);
        value->flags &= static_cast<std::uint8_t>(~CAttrValue::kPending);
        // A failed handler stops the others, but their values must leave the list all the same.
        if (!error)
            error = (this->*value->handler)(*value);
        value = following;
    }
    TSM_TRY(error);
    return nullptr;
}

CError* CObject::tellDependents(const CString& name, CAttrValue& value)
{
    // Links may form a ring; a value that is on its way already isn't sent round again.
    if (dependents.isEmpty() || value.flags & CAttrValue::kSpreading)
        return nullptr;
    const CLinkSpread spread(context);
    if (spread.isTooFar())
        TSM_FAIL("@tsmstr_CObject_tellDependents_TooFar "
                 "A change of the attribute '%1' spreads over too many links.",
                 name);
    value.flags |= CAttrValue::kSpreading;
    CError* error = nullptr;
    // By key and not by node: a dependent may end its link while it is being told.
    for (auto* entry = dependents.first(); entry && !error;) {
        CObject* dependent = entry->key;
        const CString* target = entry->value.isEmpty() ? &name : entry->value.find(name);
        if (target) {
            const CString attr = *target;
            error = dependent->onLinkedAttr(*this, attr, value);
        }
        entry = dependents.firstAbove(dependent);
    }
    value.flags &= static_cast<std::uint8_t>(~CAttrValue::kSpreading);
    TSM_TRY(error);
    return nullptr;
}

CError* CObject::onLinkedAttr(CObject&, const CString& name, const CAttrValue& value)
{
    return setAttr(name, value, true);
}

void CObject::linkAttr(CObject& source, const CString& sourceAttr, const CString& ownAttr)
{
    source.dependents[this][sourceAttr] = ownAttr;
    linkSources.add(&source);
}

// Paths

CObject* CObject::findObject(const CString& path)
{
    return CObjectPath::find(*this, path);
}

CError* CObject::pathError(const char* message, const CString& path)
{
    return addError(nullptr, __FILE__, __LINE__, errorContext(), message, path, resolvedPath(path));
}

CError* CObject::attrPathError(const char* message, const char* attrName)
{
    const CString& path = getAttrString(attrName);
    return addError(nullptr, __FILE__, __LINE__, errorContext(), message, attrName, path,
                    resolvedPath(path));
}

CString CObject::resolvedPath(const CString& path) const
{
    const bool isRelative = path[0] == '.' || path[0] == '^';
    return isRelative ? getFullName() + path : path;
}

CError* CObject::findAttrTarget(CObject*& object, const char* attrName)
{
    const CString& path = getAttrString(attrName);
    if (path.isEmpty())
        TSM_FAIL("@tsmstr_CObject_findObjectByAttr_AttrEmpty "
                 "Object name attribute '%1' cannot be empty.",
                 attrName);
    object = findObject(path);
    if (!object)
        return attrPathError("@tsmstr_CObject_findObjectByAttr_FindError Name attribute '%1' "
                             "refers to a non-existent object '%2' ('%3')",
                             attrName);
    return nullptr;
}

// Events

CError* CObject::callProcedure(const CEventProc& procedure, CAttrMap& params)
{
    return procedure.usesParams ? (this->*procedure.withParams)(params)
                                : (this->*procedure.plain)();
}

CError* CObject::runEvent(const CString& name)
{
    CAttrMap params;
    return runEvent(name, params);
}

CError* CObject::runEvent(const CString& name, CAttrMap& params)
{
    const CEventProc* procedure = classInfo->findEvent(name);
    if (!procedure)
        TSM_FAIL("@tsmstr_CObject_runEvent_UnknownEvent Unknown event '%1'.", name);
    TSM_TRY(callProcedure(*procedure, params));
    return nullptr;
}

CError* CObject::sendEvent(const CString& eventName, bool forceBridge)
{
    CAttrMap params;
    return sendEvent(eventName, params, forceBridge);
}

CError* CObject::sendEvent(const CString& eventName, CAttrMap& params, bool forceBridge)
{
    if (!context)
        return nullptr;
    TSM_TRY(context->getEvents().send(getFullName(), eventName, params, forceBridge));
    return nullptr;
}

void CObject::listenObject(const CString& senderName, const CString& eventName,
                           const CString& procName)
{
    const CEventProc* procedure = classInfo->findEvent(procName);
    if (!procedure) {
        logMessage(CString("Event handler '") + procName + "' not found in listenObject().");
        return;
    }
    subscriptions[senderName][eventName] = *procedure;
    if (context)
        context->getEvents().listen(senderName, eventName, *this, *procedure, procName);
}

void CObject::unlistenObject(const CString& senderName, const CString& eventName)
{
    auto* events = subscriptions.find(senderName);
    if (!events || !events->remove(eventName))
        return;
    if (context)
        context->getEvents().unlisten(senderName, eventName, *this);
    if (events->isEmpty())
        subscriptions.remove(senderName);
}

CError* CObject::onReleaseChildBridged(CAttrMap& params)
{
    CObject* object = findObject(params.getString("sender"));
    if (object)
        object->destroyTree();
    return nullptr;
}

CObject* CObject::findThreadOwner() noexcept
{
    CObject* object = this;
    while (object && object->inheritsThread)
        object = object->parent;
    return object;
}

void CObject::ownThread(CObjectEventBridge* bridge) noexcept
{
    eventBridge = bridge;
    ownerThread = currentThreadId();
    inheritsThread = false;
}

void CObject::logMessage(const CString& text) const
{
    logLine(text + " // " + getFullName());
}

} // namespace tsm
