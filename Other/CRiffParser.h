#pragma once

#include "Other/CWaveChunk.h"
#include "Other/CWaveFormat.h"

namespace tsm {

/// Reads the headers of the RIFF family: RIFF WAVE (IBM and Microsoft, "Multimedia Programming
/// Interface and Data Specifications 1.0", 1991), RF64 (EBU Tech 3306) and Wave64 (Sony, 2002).
class CRiffParser {
public:
    enum class EKind { Wave, RF64, Wave64 };

    /// `file` stands behind the file's id and size, and holds as much as the size tells.
    CRiffParser(CWaveChunk& file, EKind fileKind) noexcept;

    /// Walks all chunks. Errors: another form type, contradicting sizes, those of the format.
    [[nodiscard]] CError* parse(CWaveContents& contents);

    /// The 16 bytes that a Wave64 file begins with.
    [[nodiscard]] static bool isWave64Id(const std::uint8_t* id) noexcept;
    static constexpr int kGuidSize = 16;

private:
    [[nodiscard]] CError* checkForm();
    [[nodiscard]] CError* openChunk(CWaveChunk& chunk);
    [[nodiscard]] CError* openRiffChunk(CWaveChunk& chunk);
    [[nodiscard]] CError* openWave64Chunk(CWaveChunk& chunk);
    [[nodiscard]] CError* parseChunk(CWaveChunk& chunk, CWaveContents& contents);
    [[nodiscard]] CError* parseSizes(CWaveChunk& chunk);

    CWaveChunk& container;
    const EKind kind;
    const bool isSizeElsewhere; // the real sizes stand in a chunk "ds64"
    bool hasDs64 = false;
    std::uint64_t ds64DataSize = 0;
};

} // namespace tsm
