#include "Core/CFileCollector.h"

#include "Core/CFileMask.h"
#include "Core/CText.h"
#include "Platform/CNativeFolder.h"

namespace tsm {

CError* CFileCollector::collect(const CString& path)
{
    CNativeFolder folder;
    if (const int code = folder.open(path.toUtf8().c_str()))
        TSM_FAIL("@tsmstr_CSystem_collectFiles_FindFirstError "
                 "Error %1 while collecting files list in '%2' path.",
                 toString(code), path);
    if (!enterFolder(folder.getIdentity().device, folder.getIdentity().number))
        return nullptr;
    for (;;) {
        CNativeFolder::CEntry entry;
        bool isAtEnd = false;
        if (const int code = folder.next(entry, isAtEnd)) {
            folder.close();
            TSM_FAIL("@tsmstr_CSystem_collectFiles_FindNextError "
                     "Error %1 while collecting files list in '%2' path.",
                     toString(code), path);
        }
        if (isAtEnd)
            return nullptr;
        if (entry.isHidden)
            continue;
        const CString name = CString::fromUtf8(entry.name);
        if (entry.kind == EPathKind::Folder && request.isRecursive)
            TSM_TRY(takeFolder(path, name));
        else if (entry.kind == EPathKind::File)
            takeFile(path, name);
    }
}

bool CFileCollector::enterFolder(std::uint64_t device, std::uint64_t number)
{
    CSet<std::uint64_t>& onDevice = visited[device];
    if (onDevice.contains(number))
        return false;
    onDevice.add(number);
    return true;
}

CError* CFileCollector::takeFolder(const CString& path, const CString& name)
{
    if (request.addFolders)
        list.add(new CFileListEntry{{}, path + name, name, true});
    TSM_TRY(collect(path + name + "/"));
    return nullptr;
}

void CFileCollector::takeFile(const CString& path, const CString& name)
{
    const CString lower = toLowerCase(name);
    if (matchesAnyMask(lower, request.excludeMasks))
        return;
    if (request.includeMasks.isEmpty() || matchesAnyMask(lower, request.includeMasks))
        list.add(new CFileListEntry{{}, path + name, name, false});
}

} // namespace tsm
