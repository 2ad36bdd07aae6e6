#include "Core/CError.h"

#include "Core/CLog.h"
#include "Core/CPtr.h"
#include "Core/CSystem.h"
#include "Core/CText.h"

namespace tsm {
namespace {

/// The text of a message without the identifier in front of it.
CString messageText(const char* message)
{
    const CString text(message);
    const int blank = text.find(' ');
    return text[0] == '@' && blank >= 0 ? text.substring(blank + 1) : text;
}

CString sourceLine(const char* file, int line, const CString& context)
{
    CString text(file);
    text.append("( ").append(toString(line)).append(" )");
    if (!context.isEmpty())
        text.append(" // ").append(context);
    return text;
}

} // namespace

const CString& CError::getMessage() const noexcept
{
    return lines.isEmpty() ? CString::getEmpty() : lines[0];
}

void CError::log() const
{
    for (const CString& line : lines)
        logLine(line);
}

CError* addError(CError* prior, const char* file, int line, const CString& context,
                 const char* message, const CString& p1, const CString& p2, const CString& p3,
                 const CString& p4, const CString& p5)
{
    CError* error = prior ? prior : new CError;
    if (message && *message) {
        const CString* const params[] = {&p1, &p2, &p3, &p4, &p5};
        error->addLine(CSystem::formatMessage(messageText(message), params, std::size(params)));
    }
    error->addLine(sourceLine(file, line, context));
    return error;
}

bool handleError(CError* error)
{
    const CPtr<CError> owned(error);
    if (!owned)
        return false;
    owned->log();
    return true;
}

} // namespace tsm
