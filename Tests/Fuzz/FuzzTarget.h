#pragma once

#include "Core/CError.h"
#include "Core/CInputStream.h"
#include "Core/CPtr.h"
#include "Core/CWriteSeqBuffer.h"

#include <cstddef>
#include <cstdint>

namespace tsm {

/// What a fuzz target does with one input; each target's source defines it. It returns whatever the
/// input holds, and ends the process where a promise of the reader's is broken; the sanitizers and
/// libFuzzer's limits of time and memory watch the rest.
void fuzzOne(const std::uint8_t* data, std::size_t size);

/// Ends the process with these words unless the promise holds.
void promise(bool holds, const char* words);

/// Ends an error; tells whether there was one.
bool hasFailed(CError* error);

/// What `write`, a function of a stream that returns a `CError*`, puts into it.
template <class Write>
CByteBuffer bytesOf(Write&& write)
{
    CWriteSeqBuffer stream;
    promise(!hasFailed(write(static_cast<COutputStream&>(stream))), "memory takes what is written");
    CByteBuffer bytes;
    stream.takeData(bytes);
    return bytes;
}

/// The input as a stream that offers reading and nothing else. Its readers promise to ask for no
/// more at once than they have been given already, or than 64 KB: so a size that the data don't
/// hold can't cost much.
class CGuardedInput : public CInputStream {
public:
    CGuardedInput(const std::uint8_t* bytes, std::size_t count) : data(bytes), size(count) {}

    [[nodiscard]] CError* read(void* buffer, int count) override;
    /// Gives at most `pieceSize` bytes.
    [[nodiscard]] CError* readStreamed(void* buffer, int& count) override;

    int pieceSize = 1 << 16;

private:
    const std::uint8_t* data;
    std::size_t size;
    std::size_t position = 0;
};

/// The first byte of an input, which says what is done with the others.
class CFuzzChoice {
public:
    CFuzzChoice(const std::uint8_t*& data, std::size_t& size) : bits(size ? *data : 0)
    {
        if (size == 0)
            return;
        ++data;
        --size;
    }
    [[nodiscard]] int below(int count) const { return bits % count; }
    [[nodiscard]] bool bit(int index) const { return (bits >> index & 1) != 0; }

private:
    std::uint8_t bits;
};

} // namespace tsm
