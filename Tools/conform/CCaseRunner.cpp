#include "Tools/conform/CCaseRunner.h"

#include "Core/CPtr.h"
#include "Tools/Support/CStopSignal.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sstream>

#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tsm {

namespace {

using CClock = std::chrono::steady_clock;

class CDescriptor {
public:
    CDescriptor() = default;
    explicit CDescriptor(int opened) : held(opened) {}
    ~CDescriptor() { close(); }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;

    void set(int opened)
    {
        close();
        held = opened;
    }
    void close()
    {
        if (held >= 0)
            ::close(held);
        held = -1;
    }
    [[nodiscard]] int get() const { return held; }

private:
    int held = -1;
};

/// Reads the pipe until its end, or until the time is over: then false.
bool readAll(int descriptor, CClock::time_point deadline, std::string& text)
{
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - CClock::now());
        if (left.count() <= 0 || CStopSignal::getRaised() != 0)
            return false;
        pollfd waiting{descriptor, POLLIN, 0};
        if (poll(&waiting, 1, static_cast<int>(left.count())) <= 0)
            continue;
        char piece[4096];
        const ssize_t count = ::read(descriptor, piece, sizeof piece);
        if (count == 0)
            return true;
        if (count < 0 && errno != EINTR)
            return true;
        text.append(piece, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

/// Waits for the child's end; false when the time is over first.
bool waitFor(pid_t child, CClock::time_point deadline, int& status)
{
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (CClock::now() > deadline)
            return false;
        usleep(1000);
    }
    return true;
}

/// How a child came to its end, and what it told until then.
struct COutcome {
    bool isInTime = false;
    int status = 0; // as waitpid() has it
    std::string told;
};

/// Reads what the child tells until it ends, or is ended because the time is over.
COutcome watch(pid_t child, int reading, CClock::time_point deadline)
{
    COutcome outcome;
    outcome.isInTime =
        readAll(reading, deadline, outcome.told) && waitFor(child, deadline, outcome.status);
    if (!outcome.isInTime) {
        kill(child, SIGKILL);
        waitpid(child, &outcome.status, 0);
    }
    return outcome;
}

/// Whether the case came to its end.
bool takeFindings(const std::string& text, CCaseResult& result)
{
    std::istringstream lines(text);
    std::string line;
    bool hasEnded = false;
    while (std::getline(lines, line)) {
        CFinding finding;
        if (!CFinding::parse(line, finding))
            continue;
        if (finding.kind == CFinding::EKind::Failure)
            result.failures.push_back(finding);
        else if (finding.kind == CFinding::EKind::End)
            hasEnded = true;
        else
            result.notes.push_back(finding.what);
        if (finding.kind == CFinding::EKind::Skip)
            result.verdict = CCaseResult::EVerdict::Skip;
    }
    return hasEnded;
}

std::string endText(int status)
{
    if (!WIFSIGNALED(status))
        return "the process ended itself with status " + std::to_string(WEXITSTATUS(status));
    const char* const name = sigabbrev_np(WTERMSIG(status));
    const char* const about = sigdescr_np(WTERMSIG(status));
    return std::string("SIG") + (name ? name : "?") + " (" + (about ? about : "signal") + ")";
}

/// Takes the case's findings, and as a failure another end than that of the case.
void takeOutcome(const COutcome& outcome, int limitSeconds, CCaseResult& result)
{
    const std::string last = "the plug-in's process";
    const bool hasEnded = takeFindings(outcome.told, result);
    if (!outcome.isInTime)
        result.failures.push_back({CFinding::EKind::Failure, last,
                                   "ends within " + std::to_string(limitSeconds) + " s", "a hang"});
    else if (!hasEnded || outcome.status != 0)
        result.failures.push_back({CFinding::EKind::Failure, last, "lives to the end of the case",
                                   endText(outcome.status)});
}

/// The last lines of a file without a name.
std::vector<std::string> lastLines(int descriptor)
{
    constexpr off_t kMaxBytes = 65536;
    constexpr std::size_t kMaxLines = 20;
    const off_t size = lseek(descriptor, 0, SEEK_END);
    const off_t begin = std::max<off_t>(size - kMaxBytes, 0);
    std::string text(static_cast<std::size_t>(std::max<off_t>(size - begin, 0)), '\0');
    const ssize_t count = pread(descriptor, text.data(), text.size(), begin);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    if (lines.size() > kMaxLines)
        lines.erase(lines.begin(), lines.end() - kMaxLines);
    return lines;
}

} // namespace

CError* CCaseRunner::run(const CConformCase& wanted, CCaseResult& result) const
{
    result = {};
    result.name = wanted.name;
    int ends[2];
    if (pipe(ends) != 0)
        TSM_FAIL("the system gives no pipe: %1", std::strerror(errno));
    CDescriptor reading(ends[0]);
    CDescriptor writing(ends[1]);
    const CDescriptor output(memfd_create("output", 0));
    const CDescriptor errors(memfd_create("errors", 0));
    if (output.get() < 0 || errors.get() < 0)
        TSM_FAIL("the system gives no file in memory: %1", std::strerror(errno));
    const auto begin = CClock::now();
    const int seconds = limit * wanted.limitFactor;
    const auto deadline = begin + std::chrono::seconds(seconds);

    const pid_t child = fork();
    if (child < 0)
        TSM_FAIL("the system gives no process: %1", std::strerror(errno));
    if (child == 0) {
        reading.close();
        runChild(wanted, {writing.get(), output.get(), errors.get()});
    }
    writing.close();
    const COutcome outcome = watch(child, reading.get(), deadline);
    if (CStopSignal::getRaised() != 0)
        TSM_FAIL("stopped in case '%1'", wanted.name);
    takeOutcome(outcome, seconds, result);
    if (!result.failures.empty()) {
        result.verdict = CCaseResult::EVerdict::Fail;
        result.output = lastLines(output.get());
        const std::vector<std::string> lines = lastLines(errors.get());
        result.output.insert(result.output.end(), lines.begin(), lines.end());
    }
    result.seconds = std::chrono::duration<double>(CClock::now() - begin).count();
    return nullptr;
}

void CCaseRunner::runChild(const CConformCase& wanted, const CChildEnds& out) const
{
    // What stops the tool stops the plug-in's process, whatever that is doing.
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, SIG_DFL);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(out.output, STDOUT_FILENO);
    dup2(out.errors, STDERR_FILENO);
    CFindings findings(out.findings);
    CPlugin own = plugin.copyClosed();
    if (const CPtr<CError> error{wanted.run(own, findings)})
        findings.fail("the course of the case", "each step succeeds", error->getMessage().toUtf8());
    // Before the end is told: unloading may crash too.
    own.close();
    findings.end();
    std::fflush(nullptr);
    // Without the tool's own ends of static objects, of which the parent has its copy.
    _exit(0);
}

} // namespace tsm
