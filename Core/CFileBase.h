#pragma once

#include "Core/CPosStream.h"
#include "Core/CString.h"
#include "Platform/CNativeFile.h"

#include <cstdint>

namespace tsm {

/// What reading from and writing to files share: the open file, its name and its position. Error
/// numbers in messages are the system's. The destructor closes the file; an error of that goes to
/// the log only.
class CFileBase : public virtual CPosStream {
public:
    ~CFileBase() override;

    /// Nothing happens when no file is open.
    [[nodiscard]] CError* close();
    [[nodiscard]] const CString& getName() const noexcept { return name; }

    [[nodiscard]] CError* getPosition(std::uint64_t& position) override;
    [[nodiscard]] CError* getSize(std::uint64_t& size) override;
    [[nodiscard]] CError* setPosition(std::uint64_t position) override;

protected:
    /// Names the object and opens the file; an open one must have been closed. Returns the
    /// system's error code.
    [[nodiscard]] int openFile(const CString& fileName, CNativeFile::EMode mode);
    void openStandard(CNativeFile::EStandard which, const char* streamName);

    CNativeFile file;
    CString name;
};

} // namespace tsm
