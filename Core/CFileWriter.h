#pragma once

#include "Core/CFileBase.h"
#include "Core/CPosOutputStream.h"

namespace tsm {

/// Output to a file.
class CFileWriter : public CPosOutputStream, public CFileBase {
public:
    /// Opens or creates a file and empties it or, with `append`, goes to its end. "*" is the
    /// standard output, "*e" the standard error. What was open is closed first. Errors: the
    /// system's refusal.
    [[nodiscard]] CError* open(const CString& fileName, bool append = false);

    [[nodiscard]] CError* write(const void* buffer, int count) override;
};

} // namespace tsm
