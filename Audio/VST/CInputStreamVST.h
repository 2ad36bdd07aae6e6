#pragma once

#include "Audio/VST/Interfaces/IBStream.h"
#include "Core/CInputStream.h"

/// Reads a host's stream. A stream that ends too early shows in how much came.
class CInputStreamVST : public tsm::CInputStream {
public:
    /// `source` is borrowed.
    explicit CInputStreamVST(Steinberg::IBStream& source) noexcept : stream(source) {}

    /// Errors: fewer bytes came than were asked for.
    [[nodiscard]] tsm::CError* read(void* buffer, int count) override;
    [[nodiscard]] tsm::CError* readStreamed(void* buffer, int& count) override;

private:
    Steinberg::IBStream& stream;
};
