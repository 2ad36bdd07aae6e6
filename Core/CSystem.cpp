#include "Core/CSystem.h"

#include "Core/CFileCollector.h"
#include "Core/CPtr.h"
#include "Core/CText.h"
#include "Platform/CDataFolders.h"
#include "Platform/CFileSystem.h"
#include "Platform/CMessageQueue.h"
#include "Platform/CModulePath.h"

#include <array>
#include <cstdio>
#include <utility>

namespace tsm {
namespace {

constexpr const char* kErrorInstruction =
    "An issue has happened when executing the vendor's application.\n\n"
    "If this issue persists, please contact application's support staff as soon as possible. "
    "Please, copy the following information to the clipboard by selecting its text and pressing "
    "Ctrl+Insert, and send it to the vendor.  Use Shift+Insert to insert information from the "
    "clipboard into your message.";

bool isSeparator(std::uint16_t code)
{
    return code == '/' || code == '\\';
}

int hexDigit(std::uint16_t code)
{
    if (code >= '0' && code <= '9')
        return code - '0';
    if (code >= 'a' && code <= 'f')
        return code - 'a' + 10;
    return code >= 'A' && code <= 'F' ? code - 'A' + 10 : -1;
}

} // namespace

CString CSystem::formatMessage(const CString& text, const CString* const* params, int paramCount)
{
    CString result;
    for (int i = 0; i < text.getLength(); ++i) {
        if (text[i] != '%') {
            result.appendChar(text[i]);
            continue;
        }
        const std::uint16_t code = text[++i]; // the terminator at the end of the text
        if (code == '%')
            result.appendChar('%');
        else if (code >= '1' && code <= '9' && code - '1' < paramCount)
            result.append(*params[code - '1']);
    }
    return result;
}

CError* CSystem::sendEvent(CMessageReceiver& receiver, int message, std::int64_t parameter)
{
    if (const int code = receiver.post(message, parameter))
        TSM_FAIL("@tsmstr_CSystem_sendEvent_PostMessage Post message error %1.", toString(code));
    return nullptr;
}

void CSystem::showError(CError* error)
{
    const CPtr<CError> owned(error);
    std::fprintf(stderr, "%s\n\n", kErrorInstruction);
    if (!owned)
        std::fputs("<no details>\r\n", stderr);
    else
        for (int i = 0; i < owned->getLineCount(); ++i)
            std::fprintf(stderr, "%s\r\n", owned->getLine(i).toUtf8().c_str());
}

// Files and folders

CString CSystem::getUserDataFolder()
{
    return CString::fromUtf8(userDataFolder());
}

CString CSystem::getCommonDataFolder()
{
    return CString::fromUtf8(commonDataFolder());
}

const CString& CSystem::getModulePath()
{
    static const CString path = CString::fromUtf8(modulePath());
    return path;
}

const CString& CSystem::getModuleFolder()
{
    static const CString folder = getModulePath().substring(0, getModulePath().findLast('/') + 1);
    return folder;
}

bool CSystem::makeDirs(const CString& path)
{
    for (int i = 0; i <= path.getLength(); ++i) {
        if (i < path.getLength() && !isSeparator(path[i]))
            continue;
        CString prefix = path.substring(0, i);
        for (int k = 0; k < i; ++k)
            if (isSeparator(prefix[k]))
                prefix.setAt(k, '/');
        if (isDirectory(prefix))
            continue;
        // Another thread or process may make it at the same time.
        if (makeFolder(prefix.toUtf8().c_str()) != 0 && !isDirectory(prefix))
            return false;
    }
    return !path.isEmpty();
}

bool CSystem::isDirectory(const CString& path)
{
    return path.isEmpty() || pathKind(path.toUtf8().c_str()) == EPathKind::Folder;
}

CError* CSystem::collectFiles(const CString& path, bool isRecursive, bool addFolders,
                              COwnedArray<CFileListEntry>& list,
                              const COwnedArray<CString>& includeMasks,
                              const COwnedArray<CString>& excludeMasks)
{
    CString folder = path.isEmpty() ? CString(".") : path;
    if (!isSeparator(folder[folder.getLength() - 1]))
        folder += "/";
    COwnedArray<CFileListEntry> found;
    CFileCollector collector({isRecursive, addFolders, includeMasks, excludeMasks}, found);
    TSM_TRY(collector.collect(folder));
    list = std::move(found);
    return nullptr;
}

CString CSystem::normalizeFolderPath(const CString& path, bool endWithSlash)
{
    CString result;
    for (int i = 0; i < path.getLength(); ++i) {
        const bool isFirst = result.find('/') < 0;
        if (path[i] == ' ' && isFirst)
            continue;
        if (!isSeparator(path[i]))
            result.appendChar(path[i]);
        else if (result.isEmpty() || result[result.getLength() - 1] != '/')
            result.appendChar('/');
    }
    // Below the root a colon is a character like others.
    const int colon = result[0] == '/' ? -1 : result.findLast(':');
    if (colon < 0 && result[0] != '/')
        result = "/" + result;
    else if (colon >= 0 && result[colon + 1] != '/')
        result = result.substring(0, colon + 1) + "/" + result.substring(colon + 1);
    if (endWithSlash && result[result.getLength() - 1] != '/')
        result += "/";
    return result;
}

bool CSystem::parseUUID(const CString& text, std::uint8_t (&bytes)[16])
{
    constexpr std::array kDigitPlaces{0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
    constexpr std::array kBytes{3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    constexpr int kLength = 36;
    if (text.getLength() < kLength)
        return false;
    for (std::size_t i = 0; i < kBytes.size(); ++i) {
        const int high = hexDigit(text[kDigitPlaces[i]]);
        const int low = hexDigit(text[kDigitPlaces[i] + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes[kBytes[i]] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return true;
}

} // namespace tsm
