#pragma once

#include "Core/COutputStream.h"
#include "Core/CZipStream.h"

namespace tsm {

/// Deflates to another stream, as a zlib stream (RFC 1950). The data are complete after close()
/// only; the destructor closes as well, but an error of that goes to the log.
class COutputZipStream : public COutputStream, private CZipStream {
public:
    ~COutputZipStream() override;

    /// Begins a stream; `target` must outlive the writing. `level` is zlib's, 0 to 9, or -1 for its
    /// default. What was open is closed. Errors: those of zlib.
    [[nodiscard]] CError* open(COutputStream& target, int level);
    /// Writes what is left and ends the stream; nothing happens when not open.
    [[nodiscard]] CError* close();

    /// Errors: not open, those of the target and of zlib.
    [[nodiscard]] CError* write(const void* buffer, int count) override;

private:
    [[nodiscard]] CError* finish(COutputStream& to);
    [[nodiscard]] CError* flushBuffer(COutputStream& to);

    COutputStream* target = nullptr;
};

} // namespace tsm
