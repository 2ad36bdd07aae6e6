#pragma once

#include "Other/CFileSetObject.h"
#include "Platform/CFileSystem.h"

namespace tsm {

/// Where an impulse comes from: an item of a file set, or a file as it is now.
class CImpulseSource {
public:
    CImpulseSource() = default;
    /// Errors: no such item. [any]
    [[nodiscard]] static CError* fromSet(CImpulseSource& source, const CFileSetObject& fileSet,
                                         std::uint32_t id);
    /// Looks at the file, but not into it. Errors: no name, no regular file. [any]
    [[nodiscard]] static CError* fromFile(CImpulseSource& source, const CString& fileName);

    /// The item, borrowed from its set; null for a file.
    [[nodiscard]] const CFileSet::CItem* getItem() const noexcept { return item; }
    [[nodiscard]] const CString& getPath() const noexcept { return path; }
    /// Equal sources hold the same samples.
    bool operator==(const CImpulseSource&) const = default;

private:
    const CFileSet::CItem* item = nullptr;
    std::uint64_t setSerial = 0;
    CString path;
    CFileStamp stamp;
};

} // namespace tsm
