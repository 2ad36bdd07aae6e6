#pragma once

#include "Core/CInputStream.h"
#include "Core/CZipStream.h"

namespace tsm {

/// Inflates a zlib stream (RFC 1950) from another stream, of which it reads ahead.
class CInputZipStream : public CInputStream, private CZipStream {
public:
    ~CInputZipStream() override;

    /// Begins a stream at the place where `source` stands, which must outlive the reading; what was
    /// open is closed. Errors: those of the source and of zlib.
    [[nodiscard]] CError* open(CInputStream& source);
    /// Ends the reading, wherever it stands; nothing happens when not open.
    [[nodiscard]] CError* close();

    /// Errors: not open, damaged data, the stream yields less than `count` bytes.
    [[nodiscard]] CError* read(void* buffer, int count) override;
    /// Behind the last read(): sees to it that the stream ends here and agrees with the check at
    /// its end. Errors: not open, cut or damaged data, more data.
    [[nodiscard]] CError* verifyEnd();

private:
    [[nodiscard]] CError* refill(CInputStream& from);

    CInputStream* source = nullptr;
};

} // namespace tsm
