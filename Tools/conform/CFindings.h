#pragma once

#include "Audio/VST/Interfaces/VstTypes.h"
#include "Tools/conform/ConformText.h"

#include <mutex>
#include <string>

namespace tsm {

/// One thing that a case says of a plug-in.
struct CFinding {
    enum class EKind : char { Failure = 'F', Note = 'N', Skip = 'S', End = 'E' };

    EKind kind = EKind::Failure;
    std::string what;
    std::string expected; // of a failure
    std::string came;

    /// One line of text with its end, and back. False when it is none.
    [[nodiscard]] std::string toLine() const;
    [[nodiscard]] static bool parse(const std::string& line, CFinding& finding);
};

/// Takes what a case finds and writes each finding to a pipe at once, so that a crash right behind
/// it takes nothing away. [any]
class CFindings {
public:
    /// A case that fails everywhere need not be told in full.
    static constexpr int kMaxFailures = 6;

    /// The descriptor is borrowed.
    explicit CFindings(int pipeDescriptor) : descriptor(pipeDescriptor) {}

    void fail(const std::string& what, const std::string& expected, const std::string& came);
    /// What was measured; shown with the verdict.
    void note(const std::string& what);
    /// The case has nothing to look at in this plug-in.
    void skip(const std::string& reason);
    /// The case has come to its end.
    void end();

    /// Each tells whether it holds.
    bool expect(bool isTrue, const std::string& what, const std::string& expected,
                const std::string& came);
    bool expectEqual(const std::string& what, long long expected, long long came);
    bool expectOk(const std::string& what, Steinberg::tresult came);
    bool expectRefused(const std::string& what, Steinberg::tresult came);

    [[nodiscard]] bool hasFailed() const;

private:
    void write(const CFinding& finding) const;

    int descriptor;
    mutable std::mutex lock;
    int failureCount = 0;
};

} // namespace tsm
