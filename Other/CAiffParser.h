#pragma once

#include "Other/CWaveChunk.h"
#include "Other/CWaveFormat.h"

namespace tsm {

/// Reads the headers of AIFF and AIFF-C files (Apple, "Audio Interchange File Format", 1989, and
/// its extension of 1991).
class CAiffParser {
public:
    /// `file` stands behind the file's id and size, and holds as much as the size tells. Walks all
    /// chunks. Errors: another form type, contradicting sizes, those of the format.
    [[nodiscard]] static CError* parse(CWaveChunk& file, CWaveContents& contents);

private:
    [[nodiscard]] static CError* parseChunk(CWaveChunk& chunk, bool isCompressed,
                                            CWaveContents& contents);
    [[nodiscard]] static CError* parseSoundData(CWaveChunk& chunk, CWaveContents& contents);
};

} // namespace tsm
