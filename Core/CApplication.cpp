#include "Core/CApplication.h"

#include "Core/CLog.h"
#include "Core/CObjectContext.h"
#include "Core/CResourceMap.h"
#include "Core/CSystem.h"

#include <cassert>

namespace tsm {
namespace {

CApplication* theApplication = nullptr;

} // namespace

CApplication::CApplication()
{
    assert(!theApplication && "one application a process");
    theApplication = this;
    CObject::declareClass(defaultClassInfo);
}

CApplication::~CApplication()
{
    logLine("Finalizing application...");
    sharedRoot.reset();
    theApplication = nullptr;
}

CApplication* CApplication::get() noexcept
{
    return theApplication;
}

CError* CApplication::start(const CCreatorRow* rows, int rowCount, const CResourceEntry* resources,
                            const CString& documentName)
{
    logLine("Initializing application...");
    // Now, while a path that a host gave relative to its working folder still leads here.
    (void)CSystem::getModuleFolder();
    for (int i = 0; i < rowCount; ++i)
        TSM_TRY(registerCreator(rows[i]));
    if (resources)
        CResourceMap::get().addAll(resources);
    TSM_TRY(initSharedObject(documentName));
    return nullptr;
}

CError* CApplication::registerCreator(const CCreatorRow& row)
{
    if (creators.contains(row.tag))
        TSM_FAIL("@tsmstr_CObject_registerCreator "
                 "Creator for '%1' has already been registered.",
                 row.tag);
    CObjectClassInfo& info = classInfos.add(new CObjectClassInfo(defaultClassInfo));
    row.declare(info);
    creators[row.tag] = {row.create, &info};
    return nullptr;
}

const CApplication::CCreator* CApplication::findCreator(const CString& tag) const
{
    return creators.find(tag);
}

CError* CApplication::bringUp(CObject& object, const CString& documentName)
{
    if (!documentName.isEmpty()) {
        TSM_TRY(object.loadXMLData(documentName, true));
        return nullptr;
    }
    TSM_TRY(object.init());
    TSM_TRY(object.initAttrs());
    TSM_TRY(object.initChilds());
    return nullptr;
}

CError* CApplication::initSharedObject(const CString& documentName)
{
    if (sharedRoot)
        TSM_FAIL("@tsmstr_CApplication_initSharedObject Shared object already exists.");
    // It is the shared root before it is loaded: the document refers to itself by "shared::".
    sharedRoot.reset(new CObject);
    TSM_TRY(bringUp(*sharedRoot, documentName));
    return nullptr;
}

CError* CApplication::initRootObject(CTreePtr<CObject>& object, const CString& documentName)
{
    object.reset();
    if (!sharedRoot)
        TSM_FAIL("@tsmstr_CApplication_initRootObject No shared object created.");
    CTreePtr<CObject> made(new CObject);
    made->context = new CObjectContext;
    made->objectId = made->context->nextObjectId();
    TSM_TRY(bringUp(*made, documentName));
    object = std::move(made);
    return nullptr;
}

} // namespace tsm
