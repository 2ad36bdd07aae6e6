#include "Core/CSystem.h"

#include "Core/CPtr.h"
#include "Core/CText.h"
#include "Platform/CMessageQueue.h"

#include <cstdio>

namespace tsm {
namespace {

constexpr const char* kErrorInstruction =
    "An issue has happened when executing the vendor's application.\n\n"
    "If this issue persists, please contact application's support staff as soon as possible. "
    "Please, copy the following information to the clipboard by selecting its text and pressing "
    "Ctrl+Insert, and send it to the vendor.  Use Shift+Insert to insert information from the "
    "clipboard into your message.";

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

} // namespace tsm
