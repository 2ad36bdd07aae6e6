#pragma once

#include <array>
#include <cstddef>

namespace tsm {

/// What is heard in a section of the demo's music.
enum class EMusicSection { Drums, Bass, Chords, Sine, All };

/// One section: its name, its time in seconds from the start of the music, and the peak level that
/// it is set to.
struct CMusicSection {
    EMusicSection kind;
    const char* name;
    double start;
    double end;
    double peakDb; // dBFS
};

constexpr std::size_t kMusicSectionCount = 5;
constexpr double kMusicSeconds = 20.0;     // the usual length
constexpr double kMusicSineHz = 1000.0;    // frequency of the sine section
constexpr double kMusicFadeSeconds = 0.02; // at most, at either end of a section

/// The sections of music of this length, in order and without gaps. The maker of the music and the
/// analysis of what became of it share this table, so that neither has to guess.
[[nodiscard]] std::array<CMusicSection, kMusicSectionCount> musicSections(double seconds);

} // namespace tsm
