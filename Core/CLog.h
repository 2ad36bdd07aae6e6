#pragma once

#include "Core/CString.h"

namespace tsm {

/// The framework's only log: a hook that shows nothing until a sink or a file is named. Lines go to
/// both, under one lock, in the order of the calls. [any]

/// What receives log texts; called under the log's lock, so it must not log itself.
using CLogSink = void (*)(const CString& text, bool newline, void* user);

/// Names the sink; null removes it.
void setLogSink(CLogSink sink, void* user = nullptr);

/// Names the log file by its path in UTF-8; the first write truncates it, later ones append. Empty
/// text ends the file log.
void setLogPath(const CString& path);

/// Writes `text`, and the line end CR LF with `newline`.
void logLine(const CString& text, bool newline = true);

/// As above with printf's conversions; the result is cut at 1023 characters.
[[gnu::format(printf, 1, 2)]] void logFormat(const char* format, ...);

} // namespace tsm
