#pragma once

#include "Platform/CFileSystem.h"

#include <cstdint>
#include <string>

namespace tsm {

/// A walk over the entries of one folder, in the file system's order. One thread at a time.
class CNativeFolder {
public:
    struct CEntry {
        std::string name;                    // UTF-8 as a rule; the bytes that the file system has
        EPathKind kind = EPathKind::Missing; // of what a link leads to
        bool isHidden = false;
    };
    /// Which folder it is, however its path reads: links lead to the same.
    struct CIdentity {
        std::uint64_t device = 0;
        std::uint64_t number = 0;
        bool operator==(const CIdentity&) const = default;
    };

    CNativeFolder() = default;
    ~CNativeFolder() { close(); }
    CNativeFolder(const CNativeFolder&) = delete;
    CNativeFolder& operator=(const CNativeFolder&) = delete;

    /// Begins a walk; an open one ends. Returns the system's error code. [any]
    [[nodiscard]] int open(const char* path);
    void close() noexcept;
    /// The next entry, without the folder itself and its parent; `isAtEnd` when there is none.
    /// Returns the system's error code. [any]
    [[nodiscard]] int next(CEntry& entry, bool& isAtEnd);
    /// Of the open folder. [any]
    [[nodiscard]] CIdentity getIdentity() const noexcept { return identity; }

private:
    void* handle = nullptr;
    CIdentity identity;
};

} // namespace tsm
