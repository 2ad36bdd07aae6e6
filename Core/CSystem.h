#pragma once

#include "Core/CError.h"
#include "Core/COwnedArray.h"

#include <cstdint>

namespace tsm {

class CMessageReceiver;

/// One file or folder that CSystem::collectFiles found.
struct CFileListEntry : CTsmMemAllocator {
    CString path; // as the walk came to it, with the name at its end
    CString name;
    bool isFolder = false;
};

/// Services that belong to no object.
class CSystem {
public:
    /// Replaces %1 to %9 in `text` by the given parameters and %% by one percent sign; any other
    /// character behind a percent sign vanishes with it, as does a number without a parameter.
    /// [any]
    [[nodiscard]] static CString formatMessage(const CString& text, const CString* const* params,
                                               int paramCount);

    /// Posts a message to the thread of `receiver`. Errors: the system's refusal. [any]
    [[nodiscard]] static CError* sendEvent(CMessageReceiver& receiver, int message,
                                           std::int64_t parameter);

    /// Tells the user of a failure where no window of ours exists: the instruction text, then all
    /// lines of the error, each with CR LF, or "<no details>" for null. Takes the error. [any]
    static void showError(CError* error);

    // Files and folders. Paths have "/" between their components. [any] They wait for the disk.

    /// The folder below which the user's data lie, without a slash at its end; empty when the user
    /// has none. It need not exist.
    [[nodiscard]] static CString getUserDataFolder();
    /// The same for data of all users.
    [[nodiscard]] static CString getCommonDataFolder();
    /// The path of the file that this code was loaded from, and its folder with a slash at the end;
    /// empty when unknown. Looked up once: when the application starts, or before.
    [[nodiscard]] static const CString& getModulePath();
    [[nodiscard]] static const CString& getModuleFolder();

    /// Makes a folder and those above it; "\" divides components as well. Tells whether it exists
    /// at the end. An empty path doesn't.
    [[nodiscard]] static bool makeDirs(const CString& path);
    /// True for a folder; an empty path is the working folder, and so counts as one.
    [[nodiscard]] static bool isDirectory(const CString& path);
    /// Lists the files of a folder, in the file system's order. Hidden entries, and what is neither
    /// file nor folder, are left out. A file must match no mask of `excludeMasks` and, unless that
    /// is empty, one of `includeMasks`; masks ("*", "?") are in small letters, names count as such.
    /// With `isRecursive` the contents of each folder stand where the folder was met, behind its
    /// own entry if `addFolders` asks for one; no folder is entered twice. An empty path is the
    /// working folder. Errors: a folder that can't be read; `list` is as it was then.
    [[nodiscard]] static CError* collectFiles(const CString& path, bool isRecursive,
                                              bool addFolders, COwnedArray<CFileListEntry>& list,
                                              const COwnedArray<CString>& includeMasks = {},
                                              const COwnedArray<CString>& excludeMasks = {});
    /// One form for the paths of folders: no blanks before the first separator, "/" for "\", one
    /// separator in place of several, one at the beginning, unless a drive stands there ("c:"),
    /// behind which one follows. With `endWithSlash` there is one at the end.
    [[nodiscard]] static CString normalizeFolderPath(const CString& path, bool endWithSlash);

    /// Reads the 32 hexadecimal digits of an identifier in the form 8-4-4-4-12 (the characters
    /// between aren't looked at) into 16 bytes in the order in which Windows keeps them: the first
    /// three fields with the low byte first. False for a shorter text or a character that is no
    /// digit; `bytes` is undefined then. [any]
    [[nodiscard]] static bool parseUUID(const CString& text, std::uint8_t (&bytes)[16]);
};

} // namespace tsm
