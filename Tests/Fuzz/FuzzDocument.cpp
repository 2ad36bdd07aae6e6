// A compiled definition document: as data, in place and copied, and as a tree of the core's classes
// with an object made from each of its templates.

#include "Core/CApplication.h"
#include "Core/CAttrDoubler.h"
#include "Core/CMemoryReaderStatic.h"
#include "Core/CSharedAttribute.h"
#include "Core/CStdEventBridge.h"
#include "Core/CXMLData.h"
#include "Tests/Fuzz/FuzzTarget.h"
#include "Tests/Support/CDocumentBytes.h"

#include <algorithm>

namespace tsm {
namespace {

constexpr CCreatorRow kCreators[] = {creatorRow<CAttrDoubler>("core:attr-doubler"),
                                     creatorRow<CObject>("core:object"),
                                     creatorRow<CSharedAttribute>("core:shared-attribute"),
                                     creatorRow<CStdEventBridge>("ui:ui-event-bridge")};
constexpr int kMostTemplates = 50;

/// Creates what the document's strings name, in an instance's tree.
void instantiate(CApplication& application, const CXMLData& document)
{
    CTreePtr<CObject> root;
    if (hasFailed(application.initRootObject(root, CString())))
        return;
    for (int i = 0; i < std::min(document.getStringCount(), kMostTemplates); ++i) {
        CObject* made = nullptr;
        if (!hasFailed(root->createChild(made, document.getString(i), "made", true)))
            promise(made && made->getParent() == root.get(), "what is made is there");
        (void)root->findObject(document.getString(i));
    }
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CMemoryReader copied(data, static_cast<int>(size));
    CMemoryReaderStatic inPlace(data, static_cast<int>(size));
    CXMLData* first = nullptr;
    CXMLData* second = nullptr;
    const bool isWrong = hasFailed(CXMLData::load(first, copied));
    promise(isWrong == hasFailed(CXMLData::load(second, inPlace)),
            "memory and stream are judged alike");
    if (isWrong)
        return;
    const CXMLDataRef firstHeld(first);
    const CXMLDataRef secondHeld(second);
    promise(first->getStringCount() == second->getStringCount(), "both hold the same strings");
    for (int i = 0; i < first->getStringCount(); ++i)
        promise(first->getString(i) == second->getString(i), "both hold the same strings");

    const CTestResource resource("fuzz.xml", std::vector<std::uint8_t>(data, data + size));
    CApplication application;
    (void)hasFailed(application.start(kCreators, 4, nullptr, "fuzz.xml"));
    instantiate(application, *first);
}

} // namespace tsm
