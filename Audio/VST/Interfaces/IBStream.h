#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg {

/// Bytes to read or write, given by the host.
class IBStream : public FUnknown {
    TSM_VST_INTERFACE(IBStream, 0xC3BF6EA2, 0x30994752, 0x9B6BF990, 0x1EE33E9B)

    enum IStreamSeekMode : int32 { kIBSeekSet = 0, kIBSeekCur = 1, kIBSeekEnd = 2 };

    /// The counts may be null. At the end of the data, read() gives kResultOk with a smaller count.
    virtual tresult read(void* buffer, int32 numBytes, int32* numBytesRead) = 0;
    virtual tresult write(void* buffer, int32 numBytes, int32* numBytesWritten) = 0;
    /// `result` may be null.
    virtual tresult seek(int64 pos, int32 mode, int64* result) = 0;
    virtual tresult tell(int64* pos) = 0;
};

/// A stream whose size is known. Optional beside IBStream.
class ISizeableStream : public FUnknown {
    TSM_VST_INTERFACE(ISizeableStream, 0x04F9549E, 0xE02F4E6E, 0x87E86A87, 0x47F4E17F)

    virtual tresult getStreamSize(int64& size) = 0;
    virtual tresult setStreamSize(int64 size) = 0;
};

} // namespace Steinberg
