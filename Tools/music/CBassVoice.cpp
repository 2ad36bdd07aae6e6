#include "Tools/music/CBassVoice.h"

#include "Tools/music/CVoiceMath.h"

namespace tsm {

namespace {

constexpr int kPartialCount = 24;
constexpr double kPluckPoint = 0.2; // of the string's length
constexpr double kReleaseSeconds = 0.045;
constexpr double kGain = 0.42; // beside the kick

} // namespace

void addBassNote(const CNote& note, CSoundBuffer& out)
{
    const double hz = noteHz(note.pitch);
    const auto first = static_cast<std::size_t>(note.start * out.rate);
    const auto count = static_cast<std::size_t>((note.held + kReleaseSeconds) * out.rate);
    const std::size_t end = std::min(out.getFrameCount(), first + count);
    for (int n = 1; n <= kPartialCount && n * hz < 0.45 * out.rate; ++n) {
        // The triangle that the finger pulls the string into falls with the square of the partial;
        // a pickup hears the string's speed, which takes one of the two powers away.
        const double shape = std::sin(n * std::numbers::pi * kPluckPoint) / n;
        const double decay = 1.1 / (1.0 + 0.22 * n * (2.0 - note.force));
        for (std::size_t i = first; i < end; ++i) {
            const double time = static_cast<double>(i - first) / out.rate;
            const double level = kGain * note.force * shape * std::exp(-time / decay) *
                                 gate(time, 0.004, note.held, kReleaseSeconds);
            const double value = level * std::sin(kTwoPi * n * hz * time);
            out.channels[0][i] += value;
            out.channels[1][i] += value;
        }
    }
}

} // namespace tsm
