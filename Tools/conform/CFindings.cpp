#include "Tools/conform/CFindings.h"

#include <cerrno>
#include <string_view>

#include <unistd.h>

namespace tsm {

namespace {

constexpr char kDivider = '\x1f';

/// The text without characters that mean something in a line.
std::string plain(std::string text)
{
    for (char& c : text)
        if (c == '\n' || c == '\r' || c == kDivider)
            c = ' ';
    return text;
}

std::string takePart(std::string_view& rest)
{
    const std::size_t end = rest.find(kDivider);
    std::string part(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return part;
}

} // namespace

std::string CFinding::toLine() const
{
    return std::string(1, static_cast<char>(kind)) + kDivider + plain(what) + kDivider +
           plain(expected) + kDivider + plain(came) + '\n';
}

bool CFinding::parse(const std::string& line, CFinding& finding)
{
    std::string_view rest = line;
    const std::string kind = takePart(rest);
    if (kind.size() != 1 || std::string_view("FNSE").find(kind[0]) == std::string_view::npos)
        return false;
    finding.kind = static_cast<EKind>(kind[0]);
    finding.what = takePart(rest);
    finding.expected = takePart(rest);
    finding.came = takePart(rest);
    return true;
}

void CFindings::fail(const std::string& what, const std::string& expected, const std::string& came)
{
    const std::lock_guard guard(lock);
    if (++failureCount <= kMaxFailures)
        write({CFinding::EKind::Failure, what, expected, came});
}

void CFindings::note(const std::string& what)
{
    const std::lock_guard guard(lock);
    write({CFinding::EKind::Note, what, {}, {}});
}

void CFindings::skip(const std::string& reason)
{
    const std::lock_guard guard(lock);
    write({CFinding::EKind::Skip, reason, {}, {}});
}

void CFindings::end()
{
    const std::lock_guard guard(lock);
    if (failureCount > kMaxFailures)
        write({CFinding::EKind::Note,
               "and " + std::to_string(failureCount - kMaxFailures) + " more",
               {},
               {}});
    write({CFinding::EKind::End, {}, {}, {}});
}

bool CFindings::expect(bool isTrue, const std::string& what, const std::string& expected,
                       const std::string& came)
{
    if (!isTrue)
        fail(what, expected, came);
    return isTrue;
}

bool CFindings::expectEqual(const std::string& what, long long expected, long long came)
{
    return expect(expected == came, what, std::to_string(expected), std::to_string(came));
}

bool CFindings::expectOk(const std::string& what, Steinberg::tresult came)
{
    return expect(came == Steinberg::kResultOk, what, resultText(Steinberg::kResultOk),
                  resultText(came));
}

bool CFindings::expectRefused(const std::string& what, Steinberg::tresult came)
{
    return expect(came != Steinberg::kResultOk, what, "a result other than kResultOk",
                  resultText(came));
}

bool CFindings::hasFailed() const
{
    const std::lock_guard guard(lock);
    return failureCount > 0;
}

void CFindings::write(const CFinding& finding) const
{
    const std::string line = finding.toLine();
    std::size_t done = 0;
    while (done < line.size()) {
        const ssize_t came = ::write(descriptor, line.data() + done, line.size() - done);
        if (came < 0 && errno != EINTR)
            return; // the reader has gone, and with it the report
        done += came > 0 ? static_cast<std::size_t>(came) : 0;
    }
}

} // namespace tsm
