#include "Tests/Support/CParamTree.h"

#include <cmath>

namespace tsm {

namespace {

constexpr auto kNormal = EAudioParamFormat::Normal;
constexpr auto kCompact = EAudioParamFormat::Compact;
constexpr auto kLong = EAudioParamFormat::Long;
constexpr auto kPrecise = EAudioParamFormat::Precise;

class AConverter : public AParamTree {
protected:
    /// Works with that converter and these limits, in display form.
    void use(const char* name, const char* min, const char* max, CTestAttrs more = {})
    {
        more.insert(more.begin(), {{"min-values", min}, {"max-values", max}, {"def-values", min}});
        info = &infoOf("x", converter(name, more));
        cvt = &info->getConverter(0);
    }
    std::string shown(double real, EAudioParamFormat mode = kNormal)
    {
        CString out;
        cvt->format(out, *info, 0, real, mode);
        return out.toUtf8();
    }
    /// The parsed value; NaN when the text isn't accepted.
    double read(const char* text)
    {
        bool ok = false;
        const double value = cvt->parse(*info, 0, text, ok);
        return ok ? value : std::nan("");
    }
    void expectInverseMaps()
    {
        double last = -HUGE_VAL;
        for (int i = 0; i <= 64; ++i) {
            const double x = i / 64.0;
            SCOPED_TRACE(x);
            const double real = cvt->normToReal(*info, 0, x);
            EXPECT_GT(real, last);
            last = real;
            // Square roots and logarithms lose a few of the 52 bits.
            EXPECT_NEAR(cvt->realToNorm(*info, 0, real), x, 1e-12);
            const double display = cvt->normToDisplay(*info, 0, x);
            EXPECT_NEAR(cvt->displayToNorm(*info, 0, display), x, 1e-12);
        }
        EXPECT_NEAR(cvt->normToReal(*info, 0, 0.0) / info->minValues[0], 1.0, 1e-12);
        EXPECT_NEAR(cvt->normToReal(*info, 0, 1.0) / info->maxValues[0], 1.0, 1e-12);
    }

    const CAudioParamInfo* info = nullptr;
    const CAudioParamConverter* cvt = nullptr;
};

struct CShownRow {
    double real;
    EAudioParamFormat mode;
    const char* text;
};

} // namespace

TEST_F(AConverter, MapsThereAndBackOverTheWholeRange)
{
    addConverter("gain-split", "audio:cvt-gain",
                 {{"scale-power", "2.0"}, {"scale-threshold", "0.75"}});
    addConverter("gain-bent", "audio:cvt-gain",
                 {{"scale-power", "0.5"}, {"scale-threshold", "-1"}});
    addConverter("time-log", "audio:cvt-time", {{"scale", "0.001"}, {"is-log", "true"}});
    addConverter("time-exact", "audio:cvt-time", {{"scale", "1"}, {"is-exact", "true"}});
    struct CRow {
        const char* converter;
        const char* min;
        const char* max;
    };
    for (const CRow& row :
         {CRow{"gain", "-30", "30"}, CRow{"gain-split", "-96", "12"},
          CRow{"gain-bent", "-12", "12"}, CRow{"freq", "20", "20k"}, CRow{"percent", "50", "100"},
          CRow{"real", "-18", "18"}, CRow{"time", "1", "1000"}, CRow{"time-log", "1", "1000"},
          CRow{"time-exact", "0.5", "5"}}) {
        SCOPED_TRACE(row.converter);
        use(row.converter, row.min, row.max);
        expectInverseMaps();
    }
}

TEST_F(AConverter, PlacesGainsOnALogarithmicLine)
{
    use("gain", "-12", "12");
    EXPECT_NEAR(info->minValues[0], std::pow(10.0, -12.0 / 20.0), 1e-15);
    EXPECT_NEAR(cvt->normToReal(*info, 0, 0.5), 1.0, 1e-15);
    EXPECT_NEAR(cvt->normToReal(*info, 0, 0.75), std::pow(10.0, 6.0 / 20.0), 1e-14);
    EXPECT_NEAR(cvt->normToDisplay(*info, 0, 0.25), -6.0, 1e-13);
    EXPECT_EQ(cvt->displayToNorm(*info, 0, 100.0), cvt->realToNorm(*info, 0, info->maxValues[0]));
    EXPECT_NEAR(read("6"), std::pow(10.0, 0.3), 1e-14);
    EXPECT_EQ(read("40"), info->maxValues[0]);
}

TEST_F(AConverter, PutsUnityGainAtTheThreshold)
{
    addConverter("split", "audio:cvt-gain", {{"scale-power", "1"}, {"scale-threshold", "0.75"}});
    use("split", "-60", "12");
    EXPECT_NEAR(cvt->normToReal(*info, 0, 0.75), 1.0, 1e-14);
    // Half way up on each side is half of that side's decibels.
    EXPECT_NEAR(cvt->normToDisplay(*info, 0, 0.875), 6.0, 1e-12);
    EXPECT_NEAR(cvt->normToDisplay(*info, 0, 0.375), -30.0, 1e-12);
}

TEST_F(AConverter, BendsTimesByASquareAndTakesNoRootBelowTheRange)
{
    use("time", "0", "5000");
    EXPECT_DOUBLE_EQ(cvt->normToReal(*info, 0, 0.5), 1.25);
    EXPECT_DOUBLE_EQ(cvt->normToDisplay(*info, 0, 0.5), 1250.0);
    EXPECT_EQ(cvt->realToNorm(*info, 0, -1.0), 0.0);
    EXPECT_EQ(cvt->displayToNorm(*info, 0, -1.0), 0.0);
    EXPECT_NEAR(read("123.4"), 0.1234, 1e-16);
}

TEST_F(AConverter, StaysFiniteOutsideALogarithmicRange)
{
    addConverter("bent", "audio:cvt-freq", {{"scale-power", "0.5"}, {"scale-threshold", "-1"}});
    for (const char* name : {"gain", "bent"}) {
        SCOPED_TRACE(name);
        use(name, "-12", "12");
        for (const double real : {0.0, -1.0, 1e-300, 1e300}) {
            EXPECT_TRUE(std::isfinite(cvt->realToNorm(*info, 0, real))) << real;
        }
    }
}

TEST_F(AConverter, ReadsNumbersWithEitherSeparator)
{
    use("real", "-2000", "2000");
    EXPECT_EQ(read("0,5"), 0.5);
    EXPECT_EQ(read("0.5"), 0.5);
    EXPECT_EQ(read("1e3"), 1000.0);
    EXPECT_EQ(read("+3"), 3.0);
    EXPECT_EQ(read("-2500"), -2000.0);
    for (const char* text : {"1e", "12x", "", "x", "-"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(std::isnan(read(text)));
    }
}

TEST_F(AConverter, GivesTheMinimumForAnUnreadableText)
{
    bool ok = true;
    use("gain", "-30", "30");
    EXPECT_NEAR(cvt->parse(*info, 0, "loud", ok), std::pow(10.0, -1.5), 1e-15);
    EXPECT_FALSE(ok);
    EXPECT_EQ(cvt->parseUnclamped(*info, 0, "loud", ok), 1.0) << "0 dB";
    EXPECT_FALSE(ok);
    use("real", "-5", "5");
    EXPECT_EQ(cvt->parse(*info, 0, "?", ok), -5.0);
    EXPECT_EQ(cvt->parseUnclamped(*info, 0, "9", ok), 9.0) << "no limits";
    EXPECT_TRUE(ok);
}

TEST_F(AConverter, ReadsThousandsOfHertz)
{
    use("freq", "20", "20000");
    EXPECT_EQ(read("2.5k"), 2500.0);
    EXPECT_EQ(read("2,5K"), 2500.0);
    EXPECT_TRUE(std::isnan(read("k")));
    EXPECT_TRUE(std::isnan(read("2.5kk")));
}

TEST_F(AConverter, ShowsGains)
{
    use("gain", "-96", "96");
    for (const CShownRow& row : {CShownRow{1.0, kNormal, "0.0"},
                                 {1.0, kCompact, "0"},
                                 {1.0, kPrecise, "0.00"},
                                 {0.5, kNormal, "-6.0"},
                                 {0.5, kPrecise, "-6.02"},
                                 {0.5, kCompact, "-6.0"},
                                 {10.0, kCompact, "20"},
                                 {10.0, kLong, "20.0"}}) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(shown(row.real, row.mode), row.text);
    }
}

TEST_F(AConverter, ShowsFrequencies)
{
    use("freq", "1", "100000");
    for (const CShownRow& row : {CShownRow{1234.567, kPrecise, "1234.57"},
                                 {9.94, kCompact, "9.9"},
                                 {9.95, kCompact, "10"},
                                 {999.94, kCompact, "1000"},
                                 {999.96, kCompact, "1.0k"},
                                 {9999.0, kCompact, "10.0k"},
                                 {12345.0, kCompact, "12k"},
                                 {99.94, kNormal, "99.9"},
                                 {99.96, kNormal, "100"},
                                 {999.4, kNormal, "999"},
                                 {999.5, kNormal, "1.00k"},
                                 {9994.0, kNormal, "9.99k"},
                                 {9995.0, kNormal, "10.0k"},
                                 {20000.0, kNormal, "20.0k"}}) {
        SCOPED_TRACE(row.real);
        EXPECT_EQ(shown(row.real, row.mode), row.text);
    }
}

TEST_F(AConverter, ShowsNumbersAndShares)
{
    use("real", "-100", "100");
    EXPECT_EQ(shown(-0.05), "-0.05");
    EXPECT_EQ(shown(-0.05, kCompact), "-0.1") << "rounds away from zero";
    EXPECT_EQ(shown(-0.04, kCompact), "0.0") << "no sign without digits";
    EXPECT_EQ(shown(9.94, kCompact), "9.9");
    EXPECT_EQ(shown(9.96, kCompact), "10");
    use("percent", "0", "100");
    EXPECT_EQ(info->maxValues[0], 1.0);
    EXPECT_EQ(shown(0.5), "50.0");
    EXPECT_EQ(shown(0.505, kCompact), "51");
    EXPECT_EQ(read("12.5"), 0.125);
}

TEST_F(AConverter, ShowsTimesWithFewerDecimalsTheLongerTheyAre)
{
    use("time", "0", "100000");
    for (const CShownRow& row : {CShownRow{0.005, kNormal, "5.00"},
                                 {0.012345, kNormal, "12.3"},
                                 {0.12345, kNormal, "123"},
                                 {0.0094, kCompact, "9.4"},
                                 {0.0996, kCompact, "0.1*"},
                                 {0.055, kCompact, "55"},
                                 {1.25, kCompact, "1.3*"},
                                 {12.0, kCompact, "12*"}}) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(shown(row.real, row.mode), row.text);
    }
    addConverter("precise", "audio:cvt-time", {{"scale", "0.001"}, {"is-precise", "true"}});
    use("precise", "0", "1000");
    EXPECT_EQ(shown(0.12345), "123.5") << "12.345 with one more decimal, half away from zero";
    addConverter("exact", "audio:cvt-time", {{"scale", "0.001"}, {"is-exact", "true"}});
    use("exact", "0", "1000");
    EXPECT_EQ(shown(0.5), "500.00");
}

TEST_F(AConverter, RoundsAnEnumerationToItsStates)
{
    use("enum", "0", "4");
    EXPECT_EQ(cvt->normToReal(*info, 0, 0.374), 1.0);
    EXPECT_EQ(cvt->normToReal(*info, 0, 0.375), 2.0) << "1.5, away from zero";
    EXPECT_EQ(shown(3.0), "3") << "no names";
}

TEST_F(AConverter, ReadsEveryStateNameThatItShows)
{
    use("enum", "2", "6", {{"state-names", "Auto;1X|Once;Oversampled|Twice more;4X;8X"}});
    EXPECT_EQ(shown(3.0, kNormal), "1X");
    EXPECT_EQ(shown(3.0, kLong), "Once");
    EXPECT_EQ(shown(4.0, kLong), "Twice m");
    EXPECT_EQ(shown(4.0, kCompact), "Twi");
    for (double state = 2.0; state <= 6.0; ++state)
        for (const auto mode : {kNormal, kCompact, kLong, kPrecise})
            EXPECT_EQ(read(shown(state, mode).c_str()), state) << shown(state, mode);
    EXPECT_EQ(shown(1.0), "Reserve");
    EXPECT_EQ(shown(7.0), "Reserve");
    EXPECT_EQ(shown(1e300, kCompact), "Rsv");
    EXPECT_EQ(read("5"), 5.0) << "a number is the value itself";
    EXPECT_EQ(read("99"), 6.0);
    EXPECT_TRUE(std::isnan(read("Never")));
}

TEST_F(AConverter, LooksAtItsOwnStateNamesFirst)
{
    use("enum-enable", "0", "3", {{"state-names", "No;Yes;Perhaps"}});
    EXPECT_EQ(shown(0.0), "Off");
    EXPECT_EQ(shown(1.0), "On");
    EXPECT_EQ(shown(2.0), "Perhaps") << "behind the converter's own";
    EXPECT_EQ(read("On"), 1.0);
    EXPECT_EQ(read("Perhaps"), 2.0);
    EXPECT_TRUE(std::isnan(read("Yes"))) << "never shown";
}

TEST_F(AConverter, HasNoNumberForAText)
{
    info = &infoOf("x", textParam("first,second"));
    cvt = &info->getConverter(0);
    bool ok = true;
    EXPECT_EQ(cvt->parse(*info, 0, "5", ok), 0.0);
    EXPECT_FALSE(ok);
    EXPECT_EQ(shown(info->defaults.value(0, 1)), "second");
    EXPECT_EQ(shown(12345.0), "");
}

} // namespace tsm
