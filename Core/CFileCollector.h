#pragma once

#include "Core/CError.h"
#include "Core/CMap.h"
#include "Core/CSystem.h"

#include <cstdint>

namespace tsm {

/// One walk of CSystem::collectFiles. It comes into each folder once, so that links that lead
/// upward, or several to one place, don't multiply what is found.
class CFileCollector {
public:
    /// Borrows the masks.
    struct CRequest {
        bool isRecursive;
        bool addFolders;
        const COwnedArray<CString>& includeMasks;
        const COwnedArray<CString>& excludeMasks;
    };

    CFileCollector(const CRequest& wanted, COwnedArray<CFileListEntry>& found)
        : request(wanted), list(found)
    {
    }
    /// `path` ends in a slash. Errors: a folder that can't be read.
    [[nodiscard]] CError* collect(const CString& path);

private:
    [[nodiscard]] bool enterFolder(std::uint64_t device, std::uint64_t number);
    [[nodiscard]] CError* takeFolder(const CString& path, const CString& name);
    void takeFile(const CString& path, const CString& name);

    const CRequest request;
    COwnedArray<CFileListEntry>& list;
    CMap<std::uint64_t, CSet<std::uint64_t>> visited; // by device
};

} // namespace tsm
