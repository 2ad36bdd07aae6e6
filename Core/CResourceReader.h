#pragma once

#include "Core/CPosInputStream.h"
#include "Core/CPtr.h"

#include <cstdint>

namespace tsm {

/// Input from the embedded resource of a name or, when there is none, from the file of that name.
/// Anything but open() needs a former open().
class CResourceReader : public CPosInputStream {
public:
    /// Opens for reading; what was open before is closed. Errors: no resource, and the file's.
    [[nodiscard]] CError* open(const CString& name);
    /// Ends the held stream; nothing happens when there is none.
    void close() noexcept { held.reset(); }

    [[nodiscard]] const void* getMemoryPtr() const noexcept override;
    [[nodiscard]] CError* skip(int count) override;
    [[nodiscard]] CError* read(void* buffer, int count) override;
    [[nodiscard]] CError* readStreamed(void* buffer, int& count) override;
    [[nodiscard]] CError* getPosition(std::uint64_t& position) override;
    [[nodiscard]] CError* getSize(std::uint64_t& size) override;
    [[nodiscard]] CError* setPosition(std::uint64_t position) override;

private:
    CPtr<CPosInputStream> held;
};

} // namespace tsm
