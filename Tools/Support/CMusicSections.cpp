#include "Tools/Support/CMusicSections.h"

namespace tsm {

namespace {

struct CSectionRow {
    EMusicSection kind;
    const char* name;
    double share; // of the usual 20 seconds
    double peakDb;
};
constexpr std::array<CSectionRow, kMusicSectionCount> kSectionRows{{
    {EMusicSection::Drums, "drums", 4.0, -6.0},
    {EMusicSection::Bass, "bass", 4.0, -8.0},
    {EMusicSection::Chords, "chords", 4.0, -9.0},
    {EMusicSection::Sine, "sine", 3.0, -12.0},
    {EMusicSection::All, "all", 5.0, -6.0},
}};

} // namespace

std::array<CMusicSection, kMusicSectionCount> musicSections(double seconds)
{
    std::array<CMusicSection, kMusicSectionCount> sections{};
    double start = 0.0;
    for (std::size_t i = 0; i < kMusicSectionCount; ++i) {
        const CSectionRow& row = kSectionRows[i];
        const double end = start + row.share * (seconds / kMusicSeconds);
        sections[i] = {row.kind, row.name, start, end, row.peakDb};
        start = end;
    }
    return sections;
}

} // namespace tsm
