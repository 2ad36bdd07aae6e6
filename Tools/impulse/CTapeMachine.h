#pragma once

#include <string>

namespace tsm {

/// What of a tape machine shapes its response at low level. Units as in the description's
/// attributes, whose names are these with hyphens.
struct CTapeMachine {
    double speedIps = 0.0;       // inches a second
    double gapUm = 0.0;          // length of the replay head's gap
    double spacingUm = 0.0;      // from the head to the coating
    double transitionUm = 0.0;   // Bertram's transition parameter: how sharply the tape is written
    double coatingUm = 0.0;      // depth that is recorded
    double trackMm = 0.0;        // width
    double azimuthMinutes = 0.0; // of arc, between the two heads
    double headMm = 0.0;         // length of the replay head's face along the tape
    double liftMm = 0.0;         // effective distance of the tape from the face's outer edges
    double lowCutHz = 0.0;       // of the amplifiers, 12 dB per octave
    double highCutHz = 0.0;      // likewise
    double leadLimitHz = 0.0;    // where the record equaliser's rise ends
    double alignHz = 0.0;        // the record equaliser makes this as loud ...
    double alignDb = 0.0;        // ... as 1 kHz, or so much above
};

/// One impulse: its place in the set, its file's properties and the machine.
struct CImpulseSpec {
    enum class EFormat { Float32, Integer24 };

    unsigned id = 0;
    std::string name;
    EFormat format = EFormat::Float32;
    double rate = 0.0;       // samples a second
    double samples = 0.0;    // length
    double peak = 0.0;       // the largest sample, with its sign
    double peakSample = 0.0; // where it lies
    CTapeMachine machine;
};

} // namespace tsm
