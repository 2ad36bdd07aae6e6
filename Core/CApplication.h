#pragma once

#include "Core/CObject.h"
#include "Core/CResourceEntry.h"

namespace tsm {

/// The running framework: once per loaded module, made before the first instance and gone after the
/// last one. The product hands it the table of what tags create and the table of embedded
/// resources, so that this layer names no class above it.
class CApplication : public CCheckedObject {
public:
    /// A tag's creator as it stands in the registry.
    struct CCreator {
        CObject* (*create)() = nullptr;
        const CObjectClassInfo* classInfo = nullptr;
    };

    CApplication();
    CApplication(const CApplication&) = delete;
    CApplication& operator=(const CApplication&) = delete;
    ~CApplication();

    /// The one application, or null before it is made and after it has gone. [any]
    [[nodiscard]] static CApplication* get() noexcept;

    /// Enters creators and resources and builds the shared tree from the document of that name; an
    /// empty name makes an empty tree. On failure the tree stays as far as it got.
    /// Errors: a tag registered twice, those of the document. [setup]
    [[nodiscard]] CError* start(const CCreatorRow* creators, int creatorCount,
                                const CResourceEntry* resources, const CString& documentName);

    /// Enters one creator. Errors: the tag has one. [setup]
    [[nodiscard]] CError* registerCreator(const CCreatorRow& row);
    /// The creator of a tag, or null. [any]
    [[nodiscard]] const CCreator* findCreator(const CString& tag) const;

    /// Makes the shared root and loads a document into it, unless the name is empty.
    /// Errors: there is one already, those of the document. [setup]
    [[nodiscard]] CError* initSharedObject(const CString& documentName);
    /// Makes a root with a context of its own, for a plug-in instance or an editor, and loads a
    /// document into it, unless the name is empty. The caller owns the tree.
    /// Errors: no shared root, those of the document; `object` is empty then. [control]
    [[nodiscard]] CError* initRootObject(CTreePtr<CObject>& object, const CString& documentName);
    /// The root of the shared tree, or null. [any]
    [[nodiscard]] CObject* getSharedRoot() const noexcept { return sharedRoot.get(); }

private:
    [[nodiscard]] static CError* bringUp(CObject& object, const CString& documentName);

    CObjectClassInfo defaultClassInfo;
    COwnedArray<CObjectClassInfo> classInfos;
    CMap<CString, CCreator> creators;
    CTreePtr<CObject> sharedRoot;
};

} // namespace tsm
