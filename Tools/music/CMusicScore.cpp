#include "Tools/music/CMusicScore.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tsm {

namespace {

constexpr double kStepSeconds = 0.125; // a sixteenth at 120 beats a minute
constexpr int kStepsOfBar = 16;
constexpr int kStepsOfPhrase = 2 * kStepsOfBar;
constexpr double kBarSeconds = kStepsOfBar * kStepSeconds;
constexpr double kSwing = 0.16; // of a step, by which the off sixteenths come late

// One character a sixteenth, two bars: 'X' accented, 'x' plain, '.' soft, 'o' open (hats).
struct CDrumLine {
    EInstrument instrument;
    const char* steps;
};
constexpr std::array kDrumLines{
    CDrumLine{EInstrument::Kick, "X  x  x   X  x  X  x   x x X    x"},
    CDrumLine{EInstrument::Snare, "    X  .  . X  .    X  .    X .. "},
    CDrumLine{EInstrument::Hat, "X.x.X.x.X.x.X.o X.x.X.x.X.x.x.o "},
};

struct CBassStep {
    int step;
    int length; // sixteenths
    int pitch;
    double force;
};
constexpr std::array kBassLine{
    CBassStep{0, 3, 38, 1.0},  CBassStep{3, 1, 38, 0.6},  CBassStep{6, 1, 45, 0.8},
    CBassStep{7, 1, 48, 0.6},  CBassStep{8, 3, 31, 1.0},  CBassStep{11, 1, 31, 0.6},
    CBassStep{13, 1, 41, 0.7}, CBassStep{14, 2, 35, 0.8}, CBassStep{16, 3, 36, 1.0},
    CBassStep{19, 1, 36, 0.6}, CBassStep{22, 1, 43, 0.8}, CBassStep{23, 1, 46, 0.6},
    CBassStep{24, 3, 33, 1.0}, CBassStep{27, 1, 33, 0.6}, CBassStep{29, 1, 40, 0.7},
    CBassStep{30, 2, 37, 0.8},
};

struct CChord {
    std::array<int, 4> pitches;
};
// D minor 9, G 13, C major 9, A 7 with a sharp fifth, voiced without their roots.
constexpr std::array kChords{CChord{{53, 57, 60, 64}}, CChord{{53, 57, 59, 64}},
                             CChord{{52, 55, 59, 62}}, CChord{{49, 53, 55, 60}}};
constexpr CChord kLastChord{{53, 60, 64, 69}};
constexpr int kStepsOfChord = 8;

struct CStrike {
    int step; // within a chord's half bar
    int length;
    double force;
};
constexpr std::array kStrikes{CStrike{0, 4, 0.9}, CStrike{5, 1, 0.55}, CStrike{6, 2, 0.7}};

double timeOfStep(int step)
{
    return kStepSeconds * (step + (step % 2 != 0 ? kSwing : 0.0));
}

double forceOfMark(char mark)
{
    return mark == 'X' ? 1.0 : mark == '.' ? 0.35 : 0.7;
}

void addDrums(double offset, std::vector<CNote>& notes)
{
    for (const CDrumLine& line : kDrumLines)
        for (int step = 0; step < kStepsOfPhrase; ++step) {
            const char mark = line.steps[step];
            if (mark != ' ')
                notes.push_back({mark == 'o' ? EInstrument::OpenHat : line.instrument,
                                 offset + timeOfStep(step), kStepSeconds, 0, forceOfMark(mark)});
        }
}

void addBass(double offset, std::vector<CNote>& notes)
{
    for (const CBassStep& note : kBassLine)
        notes.push_back({EInstrument::Bass, offset + timeOfStep(note.step),
                         0.85 * kStepSeconds * note.length, note.pitch, note.force});
}

void addChord(const CChord& chord, double start, double held, double force,
              std::vector<CNote>& notes)
{
    // A hand never comes down as one: the fingers follow each other from below.
    constexpr double kRollSeconds = 0.006;
    double late = 0.0;
    for (const int pitch : chord.pitches) {
        notes.push_back({EInstrument::Piano, start + late, held, pitch, force});
        late += kRollSeconds;
    }
}

void addChords(double offset, std::vector<CNote>& notes)
{
    int first = 0;
    for (const CChord& chord : kChords) {
        for (const CStrike& strike : kStrikes)
            addChord(chord, offset + timeOfStep(first + strike.step),
                     0.95 * kStepSeconds * strike.length, strike.force, notes);
        first += kStepsOfChord;
    }
}

void addPhrase(EMusicSection section, double offset, std::vector<CNote>& notes)
{
    const bool isAll = section == EMusicSection::All;
    if (isAll || section == EMusicSection::Drums)
        addDrums(offset, notes);
    if (isAll || section == EMusicSection::Bass)
        addBass(offset, notes);
    if (isAll || section == EMusicSection::Chords)
        addChords(offset, notes);
}

void addEnding(EMusicSection section, double start, double held, std::vector<CNote>& notes)
{
    const bool isAll = section == EMusicSection::All;
    if (isAll || section == EMusicSection::Drums) {
        notes.push_back({EInstrument::Kick, start, held, 0, 1.0});
        notes.push_back({EInstrument::OpenHat, start, held, 0, 0.9});
    }
    if (isAll || section == EMusicSection::Bass)
        notes.push_back({EInstrument::Bass, start, held, 26, 1.0});
    if (isAll || section == EMusicSection::Chords)
        addChord(kLastChord, start, held, 0.9, notes);
}

} // namespace

std::vector<CNote> scoreOfSection(EMusicSection section, double seconds)
{
    std::vector<CNote> notes;
    if (section == EMusicSection::Sine)
        return notes;
    // A hair's breadth of tolerance, so that two bars fit into what rounds to two bars.
    const int bars = static_cast<int>(std::floor(seconds / kBarSeconds + 1e-9));
    for (int bar = 0; bar < bars; bar += 2)
        addPhrase(section, bar * kBarSeconds, notes);
    const double whole = bars * kBarSeconds;
    std::erase_if(notes, [whole](const CNote& note) { return note.start >= whole; });
    if (seconds - whole > kStepSeconds)
        addEnding(section, whole, 0.75 * (seconds - whole), notes);
    std::ranges::stable_sort(notes, {}, &CNote::instrument);
    return notes;
}

} // namespace tsm
