#pragma once

namespace tsm {

/// What the user has set at the tape stage, at the rate the stage runs at.
struct CTapeSettings {
    double sampleRate = 44100.0;
    double recGain = 1.0;     // linear
    double wet = 1.0;         // share of the saturated signal, 0.5 to 1.0
    double flutter = 0.5;     // 0.0 to 1.0
    double hardness = 0.5;    // 0.0 to 1.0; 1.0 is a hard knee at full scale
    double emphasisDb = 10.0; // high-frequency emphasis
    int feedbackMode = 0;     // 0 is off, 1 to 4 are 25, 50, 100 and 150 ms
    int flutterMode = 0;      // 0 is "CNS", any other "PRO"
};

/// What the user has set at the stage behind the impulse.
struct CTapePostSettings {
    double sampleRate = 44100.0;
    double flutter = 0.5; // 0.0 to 1.0
    double emphasisDb = 10.0;
    double highGainDb = 0.0;
    int flutterMode = 0;
};

/// Two poles, two zeros; the denominator's terms are stored negated, so that all terms add.
struct CShelfCoefficients {
    double b0 = 1.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double na1 = 0.0;
    double na2 = 0.0;

    bool operator==(const CShelfCoefficients&) const = default;
};

/// The flutter-modulated delay: band limits of the noise, depth, and nominal delay.
struct CFlutterCoefficients {
    double c0 = 0.0;
    double c1 = 0.0;
    double c2 = 0.0;
    double c3 = 0.0;
    double depth = 0.0; // samples
    int center = 1;     // samples; the stage is late by one more
    int length = 8;     // samples of one turn of the position counter, one millisecond

    bool operator==(const CFlutterCoefficients&) const = default;
};

/// All that the tape stage's loop needs, computed from the settings.
struct CTapeCoefficients {
    CFlutterCoefficients flutter;
    CShelfCoefficients shelf;
    double rollOff = 0.0; // one-pole at 5 Hz
    double recGain = 1.0;
    double wet = 1.0;
    double dry = 0.0;
    double hardness = 0.5;
    double makeup = 1.0;
    double envelope = 0.0; // one-pole of the feedback gain; unused without feedback
    bool hasFeedback = false;

    bool operator==(const CTapeCoefficients&) const = default;
};

/// All that the post stage's loop needs.
struct CTapePostCoefficients {
    CFlutterCoefficients flutter;
    CShelfCoefficients shelf;
    double rollOff = 0.0; // one-pole at 20 Hz

    bool operator==(const CTapePostCoefficients&) const = default;
};

} // namespace tsm
