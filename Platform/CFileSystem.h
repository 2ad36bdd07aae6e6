#pragma once

namespace tsm {

/// What a path names, links followed.
enum class EPathKind { Missing, File, Folder, Other };

// Paths are UTF-8; the other operations return the system's error code, 0 for success.

/// What is there; Missing also for what can't be looked at. [any]
[[nodiscard]] EPathKind pathKind(const char* path) noexcept;
/// Makes one folder. One that exists is an error. [any]
[[nodiscard]] int makeFolder(const char* path) noexcept;
/// Gives the file `from` the name `to` in one step: whoever opens `to` finds the former file or the
/// whole new one. Both lie in one file system. [any]
[[nodiscard]] int replaceFile(const char* from, const char* to) noexcept;
/// Removes a file; one that isn't there counts as removed. [any]
[[nodiscard]] int removeFile(const char* path) noexcept;

} // namespace tsm
