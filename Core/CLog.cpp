#include "Core/CLog.h"

#include "Platform/CCriticalSection.h"
#include "Platform/CNativeFile.h"

#include <cstdarg>
#include <cstdio>

namespace tsm {
namespace {

struct CLogState {
    CCriticalSection lock{4000};
    CLogSink sink = nullptr;
    void* user = nullptr;
    CString path;
    bool isTruncated = false; // the file has been begun anew in this run
};

CLogState& logState()
{
    static CLogState state;
    return state;
}

void writeToFile(CLogState& state, const CString& text, bool newline)
{
    // Opened for each write: a log is read while the program runs, and must survive its crash.
    CNativeFile file;
    const auto mode = state.isTruncated ? CNativeFile::EMode::Append : CNativeFile::EMode::Rewrite;
    if (file.open(state.path.toUtf8().c_str(), mode) != 0)
        return; // nowhere left to tell it
    state.isTruncated = true;
    std::string line = text.toUtf8();
    if (newline)
        line += "\r\n";
    std::int64_t written = 0;
    (void)file.write(line.data(), static_cast<std::int64_t>(line.size()), written);
}

} // namespace

void setLogSink(CLogSink sink, void* user)
{
    CLogState& state = logState();
    const CLockScope scope(state.lock);
    state.sink = sink;
    state.user = user;
}

void setLogPath(const CString& path)
{
    CLogState& state = logState();
    const CLockScope scope(state.lock);
    state.path = path;
    state.isTruncated = false;
}

void logLine(const CString& text, bool newline)
{
    CLogState& state = logState();
    const CLockScope scope(state.lock);
    if (state.sink)
        state.sink(text, newline, state.user);
    if (!state.path.isEmpty())
        writeToFile(state, text, newline);
}

void logFormat(const char* format, ...)
{
    char text[1024];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    logLine(CString(text));
}

} // namespace tsm
