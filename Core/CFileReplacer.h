#pragma once

#include "Core/COutputStream.h"
#include "Core/CString.h"
#include "Platform/CNativeFile.h"

#include <string>

namespace tsm {

/// Output that takes a file's place as a whole.
///
/// What is written goes into a temporary file in the same folder. commit() brings it to the medium
/// and then gives it the file's name in one step: whoever opens the file meanwhile, in this process
/// or another one, and whoever opens it behind a crash, finds the former contents or the new ones.
/// Without commit() the temporary file goes with the object.
class CFileReplacer : public COutputStream {
public:
    ~CFileReplacer() override;

    /// Begins a new content for the file; one that was begun is dropped. Errors: the folder takes
    /// no file. [any]
    [[nodiscard]] CError* open(const CString& fileName);
    [[nodiscard]] CError* write(const void* buffer, int count) override;
    /// Puts the new content in place. On an error the file is as it was. [any] Waits for the
    /// medium.
    [[nodiscard]] CError* commit();
    /// Drops what was begun. [any]
    void discard() noexcept;

private:
    [[nodiscard]] int createTemporary();
    [[nodiscard]] int putInPlace();

    CNativeFile file;
    CString name;
    std::string target;
    std::string temporary; // empty when there is none
};

} // namespace tsm
