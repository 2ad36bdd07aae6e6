#pragma once

#include "Audio/VST/Interfaces/IBStream.h"
#include "Core/COutputStream.h"

/// Writes into a host's stream.
class COutputStreamVST : public tsm::COutputStream {
public:
    /// `target` is borrowed.
    explicit COutputStreamVST(Steinberg::IBStream& target) noexcept : stream(target) {}

    /// Errors: the host's refusal.
    [[nodiscard]] tsm::CError* write(const void* buffer, int count) override;

private:
    Steinberg::IBStream& stream;
};
