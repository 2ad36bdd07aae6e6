#pragma once

#include "Core/CError.h"

#include <string>

namespace tsm {

/// A file that appears whole or not at all: it is written beside its place under another name and
/// takes its own at the end. One that ends before is removed.
class CTemporaryFile {
public:
    CTemporaryFile() = default;
    ~CTemporaryFile();
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;

    /// Errors: the name stands for something else than a file, the folder can't be written.
    [[nodiscard]] CError* create(const std::string& path);
    /// For writing; the file stays its owner.
    [[nodiscard]] int getDescriptor() const noexcept { return descriptor; }
    /// Errors: the disk.
    [[nodiscard]] CError* commit();

    /// An error that names the file.
    [[nodiscard]] CError* writeError(const char* reason) const;

private:
    void closeDescriptor() noexcept;

    std::string finalPath;
    std::string temporaryPath;
    int descriptor = -1;
};

} // namespace tsm
