#pragma once

#include <cstdint>

namespace tsm {

/// One open file of the system. Operations return the system's error code, 0 for success.
///
/// Paths are UTF-8. Other programs may read and write the file meanwhile. One thread at a time.
class CNativeFile {
public:
    enum class EMode {
        Read,      ///< existing files only
        ReadWrite, ///< created when missing
        Rewrite,   ///< write access; created when missing, emptied when not
        Append,    ///< write access; created when missing, positioned at the end
        Create,    ///< write access; a file that exists is an error
    };
    enum class EStandard { Input, Output, Error };

    CNativeFile() = default;
    ~CNativeFile();
    CNativeFile(const CNativeFile&) = delete;
    CNativeFile& operator=(const CNativeFile&) = delete;

    /// Opens a file; what was open is closed first. A folder is an error. [any]
    [[nodiscard]] int open(const char* path, EMode mode);
    /// Stands for a stream of the process, which close() leaves open. [any]
    void openStandard(EStandard which);
    /// Does nothing when not open; the object is closed in any case. [any]
    [[nodiscard]] int close();
    [[nodiscard]] bool isOpen() const noexcept { return handle >= 0; }

    /// Reads until `count` bytes or the end of the file are reached; `done` tells how many came,
    /// also beside an error. [any]
    [[nodiscard]] int read(void* buffer, std::int64_t count, std::int64_t& done);
    /// Writes `count` bytes; `done` tells how many went, also beside an error. [any]
    [[nodiscard]] int write(const void* buffer, std::int64_t count, std::int64_t& done);

    /// Waits until what was written, and the file's size, are on the medium. [any]
    [[nodiscard]] int flush();

    /// Moves to a byte counted from the beginning, or from here; behind the end is allowed. [any]
    [[nodiscard]] int seek(std::int64_t position);
    [[nodiscard]] int seekBy(std::int64_t offset);
    [[nodiscard]] int tell(std::int64_t& position) const;
    /// The file's size; pipes and terminals have none, an error. [any]
    [[nodiscard]] int getSize(std::int64_t& size) const;

private:
    std::intptr_t handle = -1;
    bool isStandard = false;
};

} // namespace tsm
