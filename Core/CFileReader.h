#pragma once

#include "Core/CFileBase.h"
#include "Core/CPosInputStream.h"

namespace tsm {

/// Input from a file.
class CFileReader : public CPosInputStream, public CFileBase {
public:
    /// Opens an existing file, or with `forWriteAccess` opens or creates one for both directions.
    /// "*" is the standard input. What was open is closed first. Errors: the system's refusal.
    [[nodiscard]] CError* open(const CString& fileName, bool forWriteAccess = false);

    /// Moves on without a look at the file's end.
    [[nodiscard]] CError* skip(int count) override;
    [[nodiscard]] CError* read(void* buffer, int count) override;
    [[nodiscard]] CError* readStreamed(void* buffer, int& count) override;
};

} // namespace tsm
