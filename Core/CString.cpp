#include "Core/CString.h"

#include "Core/CMemory.h"
#include "Core/CUtf8.h"

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstring>
#include <new>

namespace tsm {

namespace {

// What a heap text gets beyond its need, in characters, so that a few more can follow.
constexpr int kSpareCharacters = 12;

template <class A, class B>
int compareUnits(const A* a, int aLength, const B* b, int bLength)
{
    const int common = std::min(aLength, bLength);
    for (int i = 0; i < common; ++i)
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
    return aLength - bLength;
}

const std::uint8_t* bytesOf(const char* text)
{
    return reinterpret_cast<const std::uint8_t*>(text);
}

int lengthOf(const char* text)
{
    const std::size_t length = text ? std::strlen(text) : 0;
    if (length > INT_MAX)
        failOutOfMemory(length);
    return static_cast<int>(length);
}

bool isBlank(std::uint16_t code)
{
    return code == ' ' || code == '\t' || code == '\r' || code == '\n';
}

} // namespace

CString::CString() noexcept : data(inlineBuffer)
{
    terminate();
}

CString::CString(const char* text) : CString(text, lengthOf(text)) {}

CString::CString(const char* text, int count) : data(inlineBuffer)
{
    makeRoom(count, 0);
    if (count > 0)
        std::memcpy(data, text, static_cast<std::size_t>(count));
}

CString::CString(const CString& other) : data(inlineBuffer)
{
    makeRoom(other.length, other.isWide);
    std::memcpy(data, other.data, static_cast<std::size_t>(bytesFor(length)));
}

CString::CString(CString&& other) noexcept : data(inlineBuffer)
{
    takeFrom(other);
}

CString& CString::operator=(const CString& other)
{
    if (this == &other)
        return *this;
    isWide = other.isWide;
    setLength(other.length, false);
    std::memcpy(data, other.data, static_cast<std::size_t>(bytesFor(length)));
    return *this;
}

CString& CString::operator=(CString&& other) noexcept
{
    if (this != &other) {
        release();
        takeFrom(other);
    }
    return *this;
}

CString& CString::operator=(const char* text)
{
    setNarrow(text, lengthOf(text));
    return *this;
}

CString::~CString()
{
    release();
}

const CString& CString::getEmpty() noexcept
{
    // Never destroyed: static objects of other files may ask for it while they end.
    alignas(CString) static char place[sizeof(CString)];
    static const CString* const empty = new (place) CString;
    return *empty;
}

CString CString::fromUtf8(std::string_view bytes)
{
    return fromUtf8(bytes.data(), static_cast<std::int64_t>(bytes.size()));
}

CString CString::fromUtf8(const char* bytes, std::int64_t count)
{
    // Names and paths are plain nearly always, and then bytes are characters.
    const std::int64_t plain = plainPrefix(bytes, count);
    if (plain <= INT_MAX && (plain == count || bytes[plain] == 0))
        return CString(bytes, static_cast<int>(plain));

    // The first pass finds the room, so the text is allocated once.
    std::int64_t length = 0;
    std::uint32_t largest = 0;
    std::uint32_t value = 0;
    for (CUtf8Reader reader(bytes, count); reader.next(value); ++length)
        largest = std::max(largest, value);

    CString text;
    text.makeRoom(length, largest > 255);
    CUtf8Reader reader(bytes, count);
    for (int i = 0; i < text.length; ++i) {
        reader.next(value);
        text.setAt(i, static_cast<std::uint16_t>(value));
    }
    return text;
}

std::string CString::toUtf8() const
{
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(length));
    for (int i = 0; i < length && at(i) != 0; ++i)
        appendUtf8(bytes, at(i));
    return bytes;
}

bool CString::isInline() const noexcept
{
    return data == inlineBuffer;
}

const char* CString::narrowText() const noexcept
{
    assert(!isWide);
    return data;
}

const std::uint16_t* CString::wideText() const noexcept
{
    assert(isWide);
    return reinterpret_cast<const std::uint16_t*>(data);
}

void CString::setLength(int count, bool keep)
{
    const int need = checkedBytesFor(count);
    if (need > (isInline() ? kInlineBytes : capacity))
        moveToHeap(need, keep ? bytesFor(length) : 0);
    length = count;
    terminate();
}

void CString::moveToHeap(int need, int keptBytes)
{
    // A text that grows once gets what it needs; one that grows again will go on growing.
    const int newCapacity = isInline() ? need : withSpare(need);
    char* heap = static_cast<char*>(allocBlock(static_cast<std::size_t>(newCapacity)));
    std::memcpy(heap, data, static_cast<std::size_t>(keptBytes));
    release();
    data = heap;
    capacity = newCapacity;
}

void CString::makeRoom(std::int64_t count, std::uint8_t wide)
{
    assert(isInline() && length == 0);
    isWide = wide;
    const int need = checkedBytesFor(count);
    if (need > kInlineBytes) {
        capacity = withSpare(need);
        data = static_cast<char*>(allocBlock(static_cast<std::size_t>(capacity)));
    }
    length = static_cast<std::int32_t>(count);
    terminate();
}

int CString::withSpare(int need) const noexcept
{
    const int spare = isWide ? 2 * kSpareCharacters : kSpareCharacters;
    return need > INT_MAX - spare ? need : need + spare;
}

int CString::checkedBytesFor(std::int64_t count) const
{
    assert(count >= 0);
    const std::int64_t need = isWide ? 2 * count + 2 : count + 1;
    if (count > INT_MAX || need > INT_MAX)
        failOutOfMemory(static_cast<std::size_t>(need));
    return static_cast<int>(need);
}

void CString::setAt(int index, std::uint16_t code) noexcept
{
    assert(index >= 0 && index < length);
    assert(isWide || code < 256);
    if (isWide)
        reinterpret_cast<std::uint16_t*>(data)[index] = code;
    else
        data[index] = static_cast<char>(code);
}

void CString::widen()
{
    if (isWide)
        return;
    isWide = 1;
    const int need = checkedBytesFor(length);
    if (need > (isInline() ? kInlineBytes : capacity))
        moveToHeap(need, length);
    // From the end backwards: a unit lies at or behind the byte it comes from.
    for (int i = length - 1; i >= 0; --i)
        setAt(i, static_cast<std::uint8_t>(data[i]));
    terminate();
}

void CString::setNarrow(const char* text, int count)
{
    if (isWithin(text)) {
        *this = CString(text, count);
        return;
    }
    isWide = 0;
    setLength(count, false);
    if (count > 0)
        std::memcpy(data, text, static_cast<std::size_t>(count));
}

void CString::clear()
{
    isWide = 0;
    length = 0;
    terminate();
}

CString& CString::append(const CString& text)
{
    if (!text.isWide)
        return append(text.data, text.length);
    widen();
    const int former = length;
    const int count = text.length;
    setLength(checkedSum(former, count), true);
    // Read only now: `text` may be this very text, which has moved.
    std::memcpy(data + 2 * static_cast<std::ptrdiff_t>(former), text.data,
                2 * static_cast<std::size_t>(count));
    return *this;
}

CString& CString::append(const char* text)
{
    return append(text, lengthOf(text));
}

CString& CString::append(const char* text, int count)
{
    if (isWithin(text))
        return append(CString(text, count).data, count);
    const int former = length;
    setLength(checkedSum(former, count), true);
    if (isWide) {
        for (int i = 0; i < count; ++i)
            setAt(former + i, static_cast<std::uint8_t>(text[i]));
    } else if (count > 0) {
        std::memcpy(data + former, text, static_cast<std::size_t>(count));
    }
    return *this;
}

CString& CString::appendChar(std::uint32_t code)
{
    const auto unit = static_cast<std::uint16_t>(code);
    if (unit == 0)
        return *this; // a terminator inside the text would hide what follows
    if (code > 255)
        widen();
    setLength(checkedSum(length, 1), true);
    setAt(length - 1, unit);
    return *this;
}

void CString::substring(CString& out, int pos, int count) const
{
    const int from = std::clamp(pos, 0, length);
    const int taken = count < 0 ? length - from : std::min(count, length - from);
    const std::size_t unit = isWide ? 2 : 1;
    if (&out != this) {
        out.isWide = isWide;
        out.setLength(taken, false);
    }
    std::memmove(out.data, data + static_cast<std::size_t>(from) * unit,
                 static_cast<std::size_t>(taken) * unit);
    out.length = taken;
    out.terminate();
}

CString CString::substring(int pos, int count) const
{
    CString out;
    substring(out, pos, count);
    return out;
}

CString CString::trimmed() const
{
    int from = 0;
    int to = length;
    while (from < to && isBlank(at(from)))
        ++from;
    while (to > from && isBlank(at(to - 1)))
        --to;
    return substring(from, to - from);
}

int CString::find(std::uint16_t code, int from) const noexcept
{
    for (int i = std::max(from, 0); i < length; ++i)
        if (at(i) == code)
            return i;
    return -1;
}

int CString::find(const char* text, int from) const noexcept
{
    const auto wanted = static_cast<std::int64_t>(std::strlen(text));
    for (int i = std::max(from, 0); i + wanted <= length; ++i)
        if (matchesAt(i, text))
            return i;
    return -1;
}

int CString::findLast(std::uint16_t code) const noexcept
{
    for (int i = length - 1; i >= 0; --i)
        if (at(i) == code)
            return i;
    return -1;
}

bool CString::startsWith(const char* text) const noexcept
{
    return matchesAt(0, text);
}

bool CString::matchesAt(int index, const char* text) const noexcept
{
    for (; *text; ++text, ++index)
        if (index >= length || at(index) != static_cast<std::uint8_t>(*text))
            return false;
    return true;
}

int CString::orderWide(const CString& a, const CString& b) noexcept
{
    if (a.isWide && b.isWide)
        return compareUnits(a.wideText(), a.length, b.wideText(), b.length);
    if (a.isWide)
        return compareUnits(a.wideText(), a.length, bytesOf(b.data), b.length);
    return compareUnits(bytesOf(a.data), a.length, b.wideText(), b.length);
}

int CString::compare(const CString& a, const char* b) noexcept
{
    const std::uint8_t* text = bytesOf(b);
    for (int i = 0; i < a.length; ++i) {
        // Covers the shorter `b` too: its terminator is below any character.
        if (const int difference = a.at(i) - text[i]; difference || !text[i])
            return difference < 0 ? -1 : 1;
    }
    return text[a.length] ? -1 : 0;
}

bool CString::isWithin(const char* text) const noexcept
{
    const auto start = reinterpret_cast<std::uintptr_t>(data);
    const auto place = reinterpret_cast<std::uintptr_t>(text);
    return place >= start && place < start + static_cast<std::uintptr_t>(bytesFor(length));
}

int CString::checkedSum(int a, int b)
{
    const std::int64_t sum = static_cast<std::int64_t>(a) + b;
    if (sum > INT_MAX)
        failOutOfMemory(static_cast<std::size_t>(sum));
    return static_cast<int>(sum);
}

void CString::release() noexcept
{
    if (!isInline())
        freeBlock(data);
}

void CString::takeFrom(CString& other) noexcept
{
    data = other.isInline() ? inlineBuffer : other.data;
    capacity = other.capacity;
    length = other.length;
    isWide = other.isWide;
    if (other.isInline())
        std::memcpy(inlineBuffer, other.inlineBuffer, sizeof inlineBuffer);
    other.data = other.inlineBuffer;
    other.capacity = 0;
    other.clear();
}

void CString::terminate() noexcept
{
    if (isWide)
        reinterpret_cast<std::uint16_t*>(data)[length] = 0;
    else
        data[length] = 0;
}

CString operator+(const CString& a, const CString& b)
{
    CString sum(a);
    sum.append(b);
    return sum;
}

CString operator+(const CString& a, const char* b)
{
    CString sum(a);
    sum.append(b);
    return sum;
}

CString operator+(const char* a, const CString& b)
{
    CString sum(a);
    sum.append(b);
    return sum;
}

} // namespace tsm
