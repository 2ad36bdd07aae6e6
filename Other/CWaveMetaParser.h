#pragma once

#include "Other/CWaveChunk.h"

namespace tsm {

/// Walks what a sound file tells beside its samples: markers, loops and texts. Nothing here uses
/// them, so they are checked, not kept: a file whose parts contradict each other isn't trusted with
/// its samples either. All errors are contradictions between sizes, or sizes beyond reason.
class CWaveMetaParser {
public:
    /// "cue ": the places of the markers.
    [[nodiscard]] static CError* parseCue(CWaveChunk& chunk);
    /// "LIST": texts ("INFO") or names and lengths of the markers ("adtl").
    [[nodiscard]] static CError* parseList(CWaveChunk& chunk);
    /// "smpl": a sampler's loops and data of its own.
    [[nodiscard]] static CError* parseSampler(CWaveChunk& chunk);
    /// "bext" (EBU Tech 3285, "Specification of the Broadcast Wave Format").
    [[nodiscard]] static CError* parseBroadcast(CWaveChunk& chunk);
    /// A chunk that is a text as a whole.
    [[nodiscard]] static CError* parseText(CWaveChunk& chunk);

    static constexpr std::int64_t kMaxTextBytes = 0x20000;
    static constexpr std::uint32_t kMaxLoops = 8192;
    static constexpr std::uint32_t kMaxSamplerBytes = 1048576;

private:
    [[nodiscard]] static CError* parseInfoItem(CWaveChunk& item);
    [[nodiscard]] static CError* parseMarkerItem(CWaveChunk& item);
    [[nodiscard]] static CError* checkText(const CWaveChunk& chunk, const char* message);
};

} // namespace tsm
