#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/Interfaces/IBStream.h"

#include <string>

namespace tsm {

/// A stream of bytes in memory, as hosts give it to plug-ins.
class CMemoryStream : public Steinberg::FObject,
                      public Steinberg::IBStream,
                      public Steinberg::ISizeableStream {
public:
    /// More than any state that makes sense; keeps a plug-in from filling the memory.
    static constexpr Steinberg::int64 kMaxSize = Steinberg::int64{1} << 30;

    CMemoryStream() = default;
    explicit CMemoryStream(std::string content) : bytes(std::move(content)) {}

    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(Steinberg::FObject)

    Steinberg::tresult read(void* buffer, Steinberg::int32 numBytes,
                            Steinberg::int32* numBytesRead) override;
    /// kOutOfMemory, and nothing is written, beyond kMaxSize.
    Steinberg::tresult write(void* buffer, Steinberg::int32 numBytes,
                             Steinberg::int32* numBytesWritten) override;
    /// kInvalidArgument for a place before the beginning or beyond kMaxSize.
    Steinberg::tresult seek(Steinberg::int64 pos, Steinberg::int32 mode,
                            Steinberg::int64* result) override;
    Steinberg::tresult tell(Steinberg::int64* pos) override;
    Steinberg::tresult getStreamSize(Steinberg::int64& size) override;
    Steinberg::tresult setStreamSize(Steinberg::int64 size) override;

    [[nodiscard]] const std::string& getBytes() const { return bytes; }
    void rewind() { position = 0; }

private:
    std::string bytes;
    Steinberg::int64 position = 0;
};

} // namespace tsm
