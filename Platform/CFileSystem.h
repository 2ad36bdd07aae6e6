#pragma once

#include <cstdint>

namespace tsm {

/// What a path names, links followed.
enum class EPathKind { Missing, File, Folder, Other };

/// What tells a file's present content from a former one, without a look inside.
struct CFileStamp {
    std::uint64_t number = 0;  // of the file in its file system: another one when it was replaced
    std::int64_t size = 0;     // bytes
    std::int64_t modified = 0; // nanoseconds since some moment
    bool operator==(const CFileStamp&) const = default;
};

// Paths are UTF-8; the other operations return the system's error code, 0 for success.

/// What is there; Missing also for what can't be looked at. [any]
[[nodiscard]] EPathKind pathKind(const char* path) noexcept;
/// The stamp of a file. What isn't a regular one is an error. [any]
[[nodiscard]] int getFileStamp(const char* path, CFileStamp& stamp) noexcept;
/// Makes one folder. One that exists is an error. [any]
[[nodiscard]] int makeFolder(const char* path) noexcept;
/// Gives the file `from` the name `to` in one step: whoever opens `to` finds the former file or the
/// whole new one. Both lie in one file system. [any]
[[nodiscard]] int replaceFile(const char* from, const char* to) noexcept;
/// Removes a file; one that isn't there counts as removed. [any]
[[nodiscard]] int removeFile(const char* path) noexcept;

} // namespace tsm
