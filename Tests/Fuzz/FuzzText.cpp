// Texts: UTF-8, stored strings, numbers, lists and attribute values.

#include "Core/CAttrValue.h"
#include "Core/CMemoryReader.h"
#include "Core/COutputStream.h"
#include "Core/CText.h"
#include "Tests/Fuzz/FuzzTarget.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace tsm {
namespace {

void checkEncoding(const CString& text)
{
    const std::string encoded = text.toUtf8();
    const CString again = CString::fromUtf8(encoded);
    promise(again.toUtf8() == encoded, "UTF-8 of ours reads back");
    if (encoded.size() > CInputStream::kMaxStringBytes)
        return;
    const CByteBuffer stored =
        bytesOf([&](COutputStream& stream) { return stream.writeString(again); });
    CMemoryReader reader(stored);
    CString read;
    promise(!hasFailed(reader.readString(read)) && read == again, "a stored string reads back");
}

/// The C library's view, where ours takes the text for a number.
void checkNumbers(const CString& text)
{
    std::string plain = text.toUtf8();
    std::replace(plain.begin(), plain.end(), ',', '.');
    double number = 0.0;
    if (parseDouble(text, number)) {
        promise(std::strtod(plain.c_str(), nullptr) == number, "a number reads as in C");
        for (int decimals = 0; decimals <= 17; decimals += 4) {
            double shown = 0.0;
            promise(parseDouble(toFixed(number, decimals), shown), "a number shown can be read");
            const double unit = std::pow(10.0, -decimals);
            // Half a unit, and the doubles' own spacing on both sides.
            promise(std::abs(shown - number) <= 0.5 * unit + std::abs(number) * 0x1p-51,
                    "a number shown is near");
        }
    }
    std::int32_t whole = 0;
    if (parseWholeInt(text, whole))
        promise(std::strtoll(plain.c_str(), nullptr, 0) == whole, "an integer reads as in C");
    std::int32_t leading = 0;
    if (parseWholeInt(text, whole) && parseInt(text, leading))
        promise(leading == whole, "both readers of integers agree");
}

void checkLists(const CString& text)
{
    COwnedArray<CString> pieces;
    splitText(text, ';', pieces);
    CString joined;
    for (int i = 0; i < pieces.getCount(); ++i)
        joined += i == 0 ? pieces[i] : ";" + pieces[i];
    promise(joined == text, "the pieces of a list make it up");
    splitWords(text, pieces);
    for (const CString& word : pieces)
        promise(!word.isEmpty() && word.trimmed() == word, "a word has no blanks");
}

void checkAttribute(const CString& text)
{
    CAttrValue value;
    value.setText(text);
    (void)value.asBool();
    (void)value.asInt();
    (void)value.asDouble();
    promise(value.asString() == text, "an attribute's text stays");
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CGuardedInput source(data, size);
    CString stored;
    if (!hasFailed(source.readString(stored)))
        checkEncoding(stored);
    const CString text =
        CString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<std::int64_t>(size));
    checkEncoding(text);
    checkNumbers(text);
    checkLists(text);
    checkAttribute(text);
}

} // namespace tsm
