#pragma once

#include "Core/COwnedArray.h"
#include "Core/CString.h"

namespace tsm {

/// A failure: message lines and source lines, from the innermost cause outward, so that it reads
/// like a stack. Every fallible operation returns a `CError*`, null for success; whoever holds the
/// pointer owns it and either passes it on with a source line of its own (TSM_TRY), shows it, or
/// ends it with `handleError`.
class CError : public CCheckedObject, public CTsmMemAllocator {
public:
    [[nodiscard]] int getLineCount() const noexcept { return lines.getCount(); }
    [[nodiscard]] const CString& getLine(int index) const noexcept { return lines[index]; }
    /// The innermost message: what happened, without where.
    [[nodiscard]] const CString& getMessage() const noexcept;
    void addLine(const CString& line) { lines.create(line); }

    /// Writes all lines to the log.
    void log() const;

private:
    COwnedArray<CString> lines;
};

/// Makes an error, or extends `prior`, which it takes and returns.
///
/// A non-empty `message` is appended first: the text behind the first blank if it begins with "@"
/// (the word before it names the place in the source), with %1 to %9 replaced by the parameters and
/// %% by one percent sign. Then a source line is appended: file, line and, unless it is empty, the
/// context, as a rule the full name of the object at work. [any]
[[nodiscard]] CError*
addError(CError* prior, const char* file, int line, const CString& context,
         const char* message = nullptr, const CString& p1 = CString::getEmpty(),
         const CString& p2 = CString::getEmpty(), const CString& p3 = CString::getEmpty(),
         const CString& p4 = CString::getEmpty(), const CString& p5 = CString::getEmpty());

/// Ends an error in the log: writes all its lines and deletes it. Null is allowed. Tells whether
/// there was one. [any]
bool handleError(CError* error);

/// The context of errors made outside of an object; members of `CObject` see its full name instead.
[[nodiscard]] inline const CString& errorContext()
{
    return CString::getEmpty();
}

} // namespace tsm

/// Returns from the function with the call's error, extended by this place, unless it succeeds.
#define TSM_TRY(call)                                                                              \
    do {                                                                                           \
        if (::tsm::CError* tsmError = (call)) [[unlikely]]                                         \
            return ::tsm::addError(tsmError, __FILE__, __LINE__, errorContext());                  \
    } while (false)

/// Returns from the function with a new error: message, then up to five parameters.
#define TSM_FAIL(...)                                                                              \
    return ::tsm::addError(nullptr, __FILE__, __LINE__, errorContext(), __VA_ARGS__)
