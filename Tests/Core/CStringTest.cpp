#include "Core/CString.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include <iconv.h>

namespace tsm {

namespace {

int signOf(int value)
{
    return (value > 0) - (value < 0);
}

CString fromUnits(const std::u16string& units)
{
    CString text;
    for (const char16_t unit : units)
        text.appendChar(unit);
    return text;
}

std::u16string unitsOf(const CString& text)
{
    std::u16string units;
    for (int i = 0; i < text.getLength(); ++i)
        units.push_back(text.at(i));
    return units;
}

TEST(AString, LiesInsideUpToItsLimit)
{
    EXPECT_TRUE(CString(std::string(26, 'x').c_str()).isInline());
    const CString heap(std::string(27, 'x').c_str());
    EXPECT_FALSE(heap.isInline());
    EXPECT_EQ(heap.getCapacity(), 27 + 13);
    EXPECT_TRUE(fromUnits(std::u16string(12, u'\x2126')).isInline());
    EXPECT_FALSE(fromUnits(std::u16string(13, u'\x2126')).isInline());
    const CString wide = fromUnits(std::u16string(20, u'\x2126'));
    const CString copy(wide);
    EXPECT_EQ(copy.getCapacity(), 2 * 20 + 26);
}

TEST(AString, GrowsByTheStatedRoom)
{
    CString text;
    text.setLength(40, false);
    EXPECT_EQ(text.getCapacity(), 41);
    text.setLength(41, false);
    EXPECT_EQ(text.getCapacity(), 42 + 12);
    text.widen();
    EXPECT_EQ(text.getCapacity(), 84 + 24);
    text.clear();
    EXPECT_FALSE(text.isInline());
    EXPECT_EQ(text.getCapacity(), 84 + 24);
}

TEST(AString, WidensAboveLatin1AndStaysWide)
{
    CString text("abc");
    text.appendChar(255);
    EXPECT_FALSE(text.getIsWide());
    text.appendChar(256);
    EXPECT_TRUE(text.getIsWide());
    EXPECT_EQ(unitsOf(text), u"abc\u00ff\u0100");
    text.setLength(3, true);
    EXPECT_TRUE(text.getIsWide());
    EXPECT_EQ(text, "abc");
    text.setNarrow("x", 1);
    EXPECT_FALSE(text.getIsWide());
}

TEST(AString, TakesPartsOfItself)
{
    for (const char* start :
         {"twelve chars", "a text of so many characters that it is on the heap"}) {
        const std::string model(start);
        CString text(start);
        text.append(text);
        EXPECT_EQ(text.toUtf8(), model + model);
        text.append(text.narrowText() + 3, 4);
        EXPECT_EQ(text.toUtf8(), model + model + model.substr(3, 4));
        text.setNarrow(text.narrowText() + 2, 5);
        EXPECT_EQ(text.toUtf8(), model.substr(2, 5));
        text.appendChar(0x3C0);
        text.append(text);
        EXPECT_EQ(unitsOf(text), unitsOf(CString::fromUtf8(model.substr(2, 5) + "\u03c0" +
                                                           model.substr(2, 5) + "\u03c0")));
        const CString& same = text;
        text = same;
        text.substring(text, 2, 3);
        EXPECT_EQ(text.toUtf8(), model.substr(4, 3));
    }
}

/// A string beside what a standard string makes of the same operations.
class CModelled {
public:
    explicit CModelled(unsigned seed) : random(seed) {}

    void step()
    {
        switch (random() % 12) {
        case 0: {
            const std::u16string units = someUnits();
            text.append(fromUnits(units));
            model += units;
            isWide = isWide || isAbove(units);
            break;
        }
        case 1: {
            const std::string bytes = someBytes();
            text.append(bytes.c_str());
            for (const char byte : bytes)
                model.push_back(static_cast<unsigned char>(byte));
            break;
        }
        case 2: {
            const auto code = static_cast<char16_t>(1 + random() % (random() % 4 ? 255 : 0xFFFF));
            text.appendChar(code);
            model.push_back(code);
            isWide = isWide || code > 255;
            break;
        }
        case 3:
            if (random() % 4 == 0) {
                text.widen();
                isWide = true;
            }
            break;
        case 4:
            cut();
            break;
        case 5: {
            const std::string bytes = someBytes();
            text.setNarrow(bytes.c_str(), static_cast<int>(bytes.size()));
            model.clear();
            for (const char byte : bytes)
                model.push_back(static_cast<unsigned char>(byte));
            isWide = false;
            break;
        }
        case 6:
            if (random() % 8 == 0) {
                text.clear();
                model.clear();
                isWide = false;
            }
            break;
        case 7: {
            CString copy(text);
            text = CString("something else");
            text = copy;
            break;
        }
        case 8: {
            CString moved(std::move(text));
            EXPECT_TRUE(text.isEmpty());
            text.append("left");
            text = std::move(moved);
            break;
        }
        case 9: {
            const std::size_t length = random() % (model.size() + 1);
            text.setLength(static_cast<int>(length), true);
            model.resize(length);
            break;
        }
        case 10:
            if (!model.empty()) {
                const std::size_t place = random() % model.size();
                const auto code = static_cast<char16_t>(1 + random() % (isWide ? 0xFFFF : 255));
                text.setAt(static_cast<int>(place), code);
                model[place] = code;
            }
            break;
        default:
            compareWithChanged();
        }
    }

    void check() const
    {
        ASSERT_EQ(text.getLength(), static_cast<int>(model.size()));
        ASSERT_EQ(text.getIsWide(), isWide);
        ASSERT_EQ(unitsOf(text), model);
        ASSERT_EQ(text.at(text.getLength()), 0);
        if (text.isInline()) {
            ASSERT_LE(isWide ? 2 * model.size() + 2 : model.size() + 1, 27u);
        }
    }

private:
    static bool isAbove(const std::u16string& units)
    {
        for (const char16_t unit : units)
            if (unit > 255)
                return true;
        return false;
    }
    std::u16string someUnits()
    {
        std::u16string units(random() % 20, u' ');
        const unsigned range = random() % 2 ? 255 : 0xFFFF;
        for (char16_t& unit : units)
            unit = static_cast<char16_t>(1 + random() % range);
        return units;
    }
    std::string someBytes()
    {
        std::string bytes(random() % 20, ' ');
        for (char& byte : bytes)
            byte = static_cast<char>(1 + random() % 255);
        return bytes;
    }
    void cut()
    {
        const std::size_t from = random() % (model.size() + 3);
        const std::size_t count = random() % 40;
        CString part("what was there before, longer than fits");
        text.substring(part, static_cast<int>(from), static_cast<int>(count));
        model = from < model.size() ? model.substr(from, count) : std::u16string();
        EXPECT_EQ(part.getIsWide(), isWide);
        text = part;
    }
    void compareWithChanged()
    {
        std::u16string other = model;
        if (!other.empty() && random() % 4)
            other[random() % other.size()] = static_cast<char16_t>(1 + random() % 300);
        other.resize(random() % 2 ? other.size() : random() % (other.size() + 1));
        CString otherText = fromUnits(other);
        if (random() % 2)
            otherText.widen();
        EXPECT_EQ(CString::compare(text, otherText), signOf(model.compare(other)));
        EXPECT_EQ(CString::compare(otherText, text), signOf(other.compare(model)));
        if (!otherText.getIsWide()) {
            EXPECT_EQ(CString::compare(text, otherText.narrowText()), signOf(model.compare(other)));
        }
    }

    std::mt19937 random;
    CString text;
    std::u16string model;
    bool isWide = false;
};

TEST(AString, DoesWhatItsModelDoes)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        CModelled modelled(seed);
        for (int step = 0; step < 400; ++step) {
            modelled.step();
            ASSERT_NO_FATAL_FAILURE(modelled.check()) << "seed " << seed << " step " << step;
        }
    }
}

TEST(AString, ComparesBytesAsUnsigned)
{
    CString wide("caf\xE9");
    wide.widen();
    for (const CString& text : {CString("caf\xE9"), wide}) {
        EXPECT_GT(CString::compare(text, CString("cafz")), 0);
        EXPECT_GT(CString::compare(text, "cafz"), 0);
        EXPECT_LT(CString::compare(text, fromUnits(u"caf\u0101")), 0);
        EXPECT_EQ(CString::compare(text, wide), 0);
    }
}

TEST(AString, FindsAndTrims)
{
    CString text("  a.b.c\t\r\n");
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_EQ(text.find('.'), 3);
        EXPECT_EQ(text.find('.', 4), 5);
        EXPECT_EQ(text.find('.', 6), -1);
        EXPECT_EQ(text.findLast('.'), 5);
        EXPECT_EQ(text.find("b.c"), 4);
        EXPECT_EQ(text.find("b.d"), -1);
        EXPECT_EQ(text.find("c\t\r\n\n"), -1);
        EXPECT_TRUE(text.startsWith("  a"));
        EXPECT_FALSE(text.startsWith("  a.b.c\t\r\n "));
        EXPECT_EQ(text.trimmed(), "a.b.c");
        text.widen();
    }
    EXPECT_EQ(CString(" \t ").trimmed(), "");
}

// The C library's conversion, as independent truth.
std::string utf8ByIconv(const std::u16string& units)
{
    const iconv_t conversion = iconv_open("UTF-8", "UTF-16LE");
    std::u16string source(units);
    std::string bytes(units.size() * 3, '\0');
    char* in = reinterpret_cast<char*>(source.data());
    char* out = bytes.data();
    std::size_t inLeft = source.size() * 2;
    std::size_t outLeft = bytes.size();
    EXPECT_EQ(iconv(conversion, &in, &inLeft, &out, &outLeft), 0u);
    iconv_close(conversion);
    bytes.resize(bytes.size() - outLeft);
    return bytes;
}

TEST(AStringInUtf8, AgreesWithTheCLibraryForAllCharacters)
{
    std::u16string all;
    for (unsigned code = 1; code < 0x10000; ++code)
        if (code < 0xD800 || code > 0xDFFF)
            all.push_back(static_cast<char16_t>(code));
    const std::string bytes = utf8ByIconv(all);
    EXPECT_EQ(fromUnits(all).toUtf8(), bytes);
    EXPECT_EQ(unitsOf(CString::fromUtf8(bytes)), all);

    const std::u16string narrow = all.substr(0, 255);
    const CString decoded = CString::fromUtf8(utf8ByIconv(narrow));
    EXPECT_FALSE(decoded.getIsWide());
    EXPECT_EQ(decoded.toUtf8(), utf8ByIconv(narrow));
}

TEST(AStringInUtf8, SeesASpecialByteAtAnyPlace)
{
    const std::string plain = "a name of 26 plain letters";
    for (std::size_t place = 0; place < plain.size(); ++place) {
        SCOPED_TRACE(place);
        std::string bytes = plain;
        bytes.insert(place, 1, '\0');
        EXPECT_EQ(CString::fromUtf8(bytes).toUtf8(), plain.substr(0, place));
        bytes[place] = '\x81';
        EXPECT_EQ(CString::fromUtf8(bytes), plain.c_str());
        bytes.replace(place, 1, "\u03c0");
        EXPECT_EQ(CString::fromUtf8(bytes).toUtf8(), bytes);
        EXPECT_EQ(CString::fromUtf8(bytes).find(0x3C0), static_cast<int>(place));
    }
}

TEST(AStringInUtf8, TakesDamagedBytesInItsStatedWay)
{
    struct CRow {
        const char* what;
        std::string_view bytes;
        std::u16string expected;
    };
    using namespace std::string_view_literals;
    const CRow rows[] = {
        {"a value of 0 ends", "ab\0cd"sv, u"ab"},
        {"an overlong 0 ends",
         "ab\xC0\x80"
         "cd"sv,
         u"ab"},
        {"a cut sequence ends", "ab\xE2\x82"sv, u"ab"},
        {"a cut sequence of four ends", "\xF0\x9F\x98"sv, u""},
        {"bytes of no kind are skipped", "\x80\x61\xBF\xF8\xFF\x62"sv, u"ab"},
        {"what continues isn't tested", "\xC3\x29"sv, u"\u00e9"},
        {"above 65535 is cut", "a\xF0\x9F\x98\x80"sv, u"a\xF600"},
        {"what is cut to 0 is dropped", "a\xF0\xA0\x80\x80z"sv, u"az"},
    };
    for (const CRow& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(unitsOf(CString::fromUtf8(row.bytes)), row.expected);
    }
    EXPECT_EQ(fromUnits(u"a\xD83D\xDE00z").toUtf8(), "az");
}

} // namespace

} // namespace tsm
