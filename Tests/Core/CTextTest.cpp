#include "Core/CText.h"
#include "Core/CRounding.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace tsm {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(AFixedText, RoundsHalvesAwayAndSignsTheDigits)
{
    struct CRow {
        double value;
        int decimals;
        const char* text;
    };
    for (const CRow& row :
         {CRow{1.5, 4, "1.5000"}, CRow{-0.05, 1, "-0.1"}, CRow{0.05, 1, "0.1"},
          CRow{-0.04, 1, "0.0"}, CRow{-0.0, 2, "0.00"}, CRow{0.125, 2, "0.13"},
          CRow{-0.125, 2, "-0.13"}, CRow{2.5, 0, "3"}, CRow{-2.5, 0, "-3"}, CRow{0.4, 0, "0"},
          CRow{-0.4, 0, "0"}, CRow{9.996, 2, "10.00"}, CRow{-12.0, 1, "-12.0"},
          CRow{4503599627370497.0, 0, "4503599627370497"}, CRow{0.007, 3, "0.007"}}) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(toFixed(row.value, row.decimals).toUtf8(), row.text);
    }
}

TEST(AFixedText, AgreesWithPrintfAwayFromTies)
{
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    int compared = 0;
    for (int i = 0; i < 20000; ++i) {
        const int decimals = static_cast<int>(random() % 7);
        const double value = mantissa(random) * std::pow(10.0, static_cast<int>(random() % 9));
        const double scaled = std::abs(value) * std::pow(10.0, decimals);
        // Beside a tie the scaled value's own rounding decides, as it should here.
        if (std::abs(scaled - std::floor(scaled) - 0.5) < 1e-3 || scaled < 0.5)
            continue;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.*f", decimals, value);
        ASSERT_EQ(toFixed(value, decimals).toUtf8(), expected);
        ++compared;
    }
    EXPECT_GT(compared, 15000);
}

TEST(AFixedText, CopesWithWhatNoDigitsHold)
{
    EXPECT_EQ(toFixed(kInfinity, 2), "inf");
    EXPECT_EQ(toFixed(-kInfinity, 0), "-inf");
    EXPECT_EQ(toFixed(std::nan(""), 1), "nan");
    for (const double value : {std::numeric_limits<double>::max(), -1e300, 0x1p63, -0x1p70}) {
        char expected[400];
        std::snprintf(expected, sizeof expected, "%.17f", value);
        EXPECT_EQ(toFixed(value, 17).toUtf8(), expected);
    }
    EXPECT_EQ(toFixed(std::numeric_limits<double>::denorm_min(), 17), "0.00000000000000000");
}

TEST(ARoundedNumber, HasTheLimitsOfItsType)
{
    struct CRow {
        double value;
        std::int32_t rounded;
    };
    for (const CRow& row :
         {CRow{0.5, 1}, CRow{-0.5, -1}, CRow{1.4999, 1}, CRow{-1.5, -2},
          CRow{2147483647.4, INT_MAX}, CRow{2147483648.0, INT_MAX}, CRow{-2147483649.0, INT_MIN},
          CRow{kInfinity, INT_MAX}, CRow{-kInfinity, INT_MIN}, CRow{std::nan(""), 0}})
        EXPECT_EQ(roundToInt(row.value), row.rounded) << row.value;
}

TEST(AnIntegerText, IsReadLikeTheCLibraryReadsIt)
{
    std::mt19937 random(17);
    const std::string characters = "00011235789aFxX+-.";
    for (int i = 0; i < 200000; ++i) {
        std::string text(random() % 12, ' ');
        for (char& character : text)
            character = characters[random() % characters.size()];
        char* end = nullptr;
        const long long expected = std::strtoll(text.c_str(), &end, 0);
        const bool isNumber = end != text.c_str() && expected >= INT_MIN && expected <= INT_MAX;
        std::int32_t value = -1;
        ASSERT_EQ(parseInt(CString(text.c_str()), value), isNumber) << text;
        ASSERT_EQ(value, isNumber ? expected : 0) << text;
        const bool isWhole = isNumber && *end == 0;
        ASSERT_EQ(parseWholeInt(CString(text.c_str()), value), isWhole) << text;
        ASSERT_EQ(value, isWhole ? expected : 0) << text;
    }
}

TEST(AnIntegerText, ComesBackFromItsNumber)
{
    for (const std::int32_t value : {0, 1, -1, 4096, INT_MAX, INT_MIN}) {
        std::int32_t back = 7;
        EXPECT_TRUE(parseWholeInt(toString(value), back));
        EXPECT_EQ(back, value);
    }
    EXPECT_EQ(toString(std::uint32_t{4294967295u}), "4294967295");
    EXPECT_EQ(toString(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

// What strtod makes of the text, with the same bits.
void expectLikeStrtod(const std::string& text)
{
    const double expected = std::strtod(text.c_str(), nullptr);
    double value = -1.0;
    ASSERT_EQ(parseDouble(CString(text.c_str()), value), std::isfinite(expected)) << text;
    if (std::isfinite(expected)) {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected))
            << text;
    }
}

TEST(ARealText, IsRoundedCorrectly)
{
    std::mt19937_64 random(23);
    for (int i = 0; i < 20000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        char text[64];
        std::snprintf(text, sizeof text, "%.*e", static_cast<int>(random() % 25), value);
        ASSERT_NO_FATAL_FAILURE(expectLikeStrtod(text));
    }
    for (const char* text :
         {"0.1", "-0", "0e99999999999", "1e400", "1e-400", "-1e-400", "2.2250738585072011e-308",
          "4.9e-324", "2.4703282292062327e-324", "2.4703282292062328e-324",
          "1.7976931348623157e308", "1.7976931348623159e308", "9007199254740993",
          "0.00000000000000000000000000000000000000000000000000000000001e60",
          "100000000000000000000000000000000000000000000000000e-50", "1e99999999999999999999",
          "1e-99999999999999999999"})
        ASSERT_NO_FATAL_FAILURE(expectLikeStrtod(text));
}

TEST(ARealText, BreaksTiesByItsLastDigit)
{
    std::mt19937_64 random(29);
    for (int i = 0; i < 300; ++i) {
        const double value = std::ldexp(static_cast<double>(random() >> 11 | 1ULL << 52),
                                        static_cast<int>(random() % 1900) - 1000);
        // The middle between two neighbours has 54 bits; a long double holds it exactly.
        const long double middle =
            (static_cast<long double>(value) + std::nextafter(value, kInfinity)) / 2;
        char digits[1200];
        std::snprintf(digits, sizeof digits, "%.900Le", middle);
        std::string text(digits);
        ASSERT_NO_FATAL_FAILURE(expectLikeStrtod(text));
        text[890] = '1'; // behind the last digit that counts, beyond those that are kept
        ASSERT_NO_FATAL_FAILURE(expectLikeStrtod(text));
    }
}

TEST(ARealText, HasAnExactForm)
{
    struct CRow {
        const char* text;
        double value;
    };
    for (const CRow& row :
         {CRow{"0,5", 0.5}, CRow{"0.5", 0.5}, CRow{"1e3", 1000.0}, CRow{"+1E+3", 1000.0},
          CRow{".5", 0.5}, CRow{"5.", 5.0}, CRow{"-12,5e-1", -1.25}, CRow{"007", 7.0}}) {
        double value = 0.0;
        EXPECT_TRUE(parseDouble(row.text, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
    for (const char* text : {"", "+", ".", ",", "1e", "1e+", "e3", ".e3", "12x", " 1", "1 ",
                             "1.2.3", "1.,2", "--1", "inf", "nan", "0x10", "1e3.5", "1e999"}) {
        double value = 1.0;
        EXPECT_FALSE(parseDouble(text, value)) << text;
        EXPECT_EQ(value, 0.0) << text;
    }
    CString wideDigit("1");
    wideDigit.appendChar(0x130); // its low byte is that of a "0"
    double value = 1.0;
    EXPECT_FALSE(parseDouble(wideDigit, value));
}

std::vector<std::string> textsOf(const COwnedArray<CString>& pieces)
{
    std::vector<std::string> texts;
    for (const CString& piece : pieces)
        texts.push_back(piece.toUtf8());
    return texts;
}

TEST(AList, IsCutAtSeparatorsAndBlanks)
{
    using Texts = std::vector<std::string>;
    COwnedArray<CString> pieces;
    splitText("a;;bc;", ';', pieces);
    EXPECT_EQ(textsOf(pieces), (Texts{"a", "", "bc", ""}));
    splitText("", ';', pieces);
    EXPECT_EQ(textsOf(pieces), (Texts{""}));
    splitWords(" a\t\tbc \r\n d", pieces);
    EXPECT_EQ(textsOf(pieces), (Texts{"a", "bc", "d"}));
    splitWords(" \n", pieces);
    EXPECT_EQ(textsOf(pieces), Texts());
}

} // namespace

} // namespace tsm
