#pragma once

#include "Audio/CAudioVizData.h"
#include "Core/CPtr.h"
#include "Core/CString.h"

namespace tsm {

class CInputStream;

/// Reads what CAudioVizCollector::writeStream() has written: begin(), then next() until it gives no
/// record. Counts and sizes are checked before they are used, and memory is taken for one record at
/// a time. [any]
class CAudioVizReader : public CCheckedObject {
public:
    /// Borrows the stream.
    explicit CAudioVizReader(CInputStream& source) noexcept : stream(source) {}
    CAudioVizReader(const CAudioVizReader&) = delete;
    CAudioVizReader& operator=(const CAudioVizReader&) = delete;

    /// Reads the sender's time: the end of the block that it ran last, in seconds of its stream.
    /// Errors: cut data, a time that isn't finite.
    [[nodiscard]] CError* begin(double& now);
    /// Reads the next record, null at the end; records of unknown types are passed over. Errors:
    /// cut data, more records of a source than a sender keeps, sizes that can't be, a record's own.
    [[nodiscard]] CError* next(CPtr<CAudioVizData>& record);
    /// The process that made the last record, by its full name.
    [[nodiscard]] const CString& getSourceName() const noexcept { return sourceName; }

private:
    [[nodiscard]] CError* beginSource();
    [[nodiscard]] CError* readRecord(CPtr<CAudioVizData>& record);

    CInputStream& stream;
    CString sourceName;
    std::uint32_t left = 0; // records of the source
    bool isEnd = false;
};

} // namespace tsm
