#pragma once

#include "Core/CString.h"

#include <cstdint>

struct z_stream_s;

namespace tsm {

/// What inflating and deflating share: zlib's state, with its memory from the block allocator, and
/// the buffer on the compressed side.
class CZipStream : public CCheckedObject {
public:
    CZipStream(const CZipStream&) = delete;
    CZipStream& operator=(const CZipStream&) = delete;

protected:
    static constexpr int kBufferSize = 32768;

    CZipStream();
    ~CZipStream();
    /// Clears zlib's state for a new beginning.
    void resetState() noexcept;
    /// zlib's words about its last error; empty when it has none.
    [[nodiscard]] CString zlibMessage() const;

    z_stream_s* zip;
    std::uint8_t* zipBuffer;
};

} // namespace tsm
