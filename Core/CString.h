#pragma once

#include "Core/CCheckedObject.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tsm {

/// The framework's text. Narrow (one byte a character, code points 0 to 255, Latin-1) until a
/// character above 255 enters it, then wide (16-bit units) for good. Both forms are always
/// zero-terminated, and texts of the same characters are equal whatever their width.
///
/// 26 narrow or 12 wide characters fit into the object; longer texts live in allocator blocks. A
/// string never shrinks and never goes back to its inline buffer. No locking: its user guards it.
class CString : public CCheckedObject {
public:
    CString() noexcept;
    /// Takes zero-terminated Latin-1 text; null gives the empty text.
    CString(const char* text);
    /// Takes `count` Latin-1 characters.
    CString(const char* text, int count);
    CString(const CString& other);
    CString(CString&& other) noexcept;
    CString& operator=(const CString& other);
    CString& operator=(CString&& other) noexcept;
    CString& operator=(const char* text);
    ~CString();

    /// The shared empty text, for operations that have none to return a reference to.
    [[nodiscard]] static const CString& getEmpty() noexcept;
    /// Decodes UTF-8; a zero value or a sequence that runs past the end stops the decoding, leading
    /// bytes of no kind are skipped, values above 65535 are cut to 16 bits (and dropped if
    /// that leaves 0).
    [[nodiscard]] static CString fromUtf8(const char* bytes, std::int64_t count);
    [[nodiscard]] static CString fromUtf8(std::string_view bytes);
    /// The text in UTF-8; surrogate values are dropped.
    [[nodiscard]] std::string toUtf8() const;

    [[nodiscard]] int getLength() const noexcept { return length; }
    [[nodiscard]] bool isEmpty() const noexcept { return length == 0; }
    [[nodiscard]] bool getIsWide() const noexcept { return isWide != 0; }
    /// True while the text lies inside the object.
    [[nodiscard]] bool isInline() const noexcept;
    /// Bytes of the heap block; meaningful only when not inline.
    [[nodiscard]] int getCapacity() const noexcept { return capacity; }
    /// The character at `index` (0 to length; the terminator is 0).
    [[nodiscard]] std::uint16_t at(int index) const noexcept
    {
        return isWide ? reinterpret_cast<const std::uint16_t*>(data)[index]
                      : static_cast<std::uint8_t>(data[index]);
    }
    std::uint16_t operator[](int index) const noexcept { return at(index); }
    /// The characters of a narrow text; only for narrow texts.
    [[nodiscard]] const char* narrowText() const noexcept;
    /// The units of a wide text; only for wide texts.
    [[nodiscard]] const std::uint16_t* wideText() const noexcept;

    /// Makes room for `count` characters in the present width and ends the text there; with `keep`
    /// the old characters stay, otherwise they are undefined until written through setAt().
    void setLength(int count, bool keep);
    /// Overwrites the character at `index`; the code must fit the present width.
    void setAt(int index, std::uint16_t code) noexcept;
    /// Turns a narrow text wide, in place.
    void widen();
    /// Replaces the text by `count` Latin-1 characters; a wide text becomes narrow.
    void setNarrow(const char* text, int count);
    /// Empties the text and makes it narrow; the capacity stays.
    void clear();

    CString& append(const CString& text);
    CString& append(const char* text);
    CString& append(const char* text, int count);
    /// Appends one character; 256 and above widen the text, above 65535 is cut to 16 bits;
    /// what is 0 then isn't appended.
    CString& appendChar(std::uint32_t code);
    CString& operator+=(const CString& text) { return append(text); }
    CString& operator+=(const char* text) { return append(text); }

    /// Sets `out` to `count` characters from `pos` on; -1 means up to the end. Positions beyond the
    /// text give an empty one.
    void substring(CString& out, int pos, int count = -1) const;
    [[nodiscard]] CString substring(int pos, int count = -1) const;
    /// The text without blanks, tabs and line ends on both sides.
    [[nodiscard]] CString trimmed() const;

    /// The index of a character or text from `from` on, or -1.
    [[nodiscard]] int find(std::uint16_t code, int from = 0) const noexcept;
    [[nodiscard]] int find(const char* text, int from = 0) const noexcept;
    /// The last index of a character, or -1.
    [[nodiscard]] int findLast(std::uint16_t code) const noexcept;
    [[nodiscard]] bool startsWith(const char* text) const noexcept;

    /// -1, 0 or 1, unit by unit over both texts whatever their widths; the shorter of two texts
    /// with the same beginning is the smaller.
    [[nodiscard]] static int compare(const CString& a, const CString& b) noexcept
    {
        const int difference = order(a, b);
        return (difference > 0) - (difference < 0);
    }
    [[nodiscard]] static int compare(const CString& a, const char* b) noexcept;

    /// As compare(), but any negative or positive number: the inner step of map look-ups.
    [[nodiscard]] static int order(const CString& a, const CString& b) noexcept
    {
        if (a.isWide | b.isWide) [[unlikely]]
            return orderWide(a, b);
        const int common = a.length < b.length ? a.length : b.length;
        const int difference = std::memcmp(a.data, b.data, static_cast<std::size_t>(common));
        return difference ? difference : a.length - b.length;
    }

    friend bool operator==(const CString& a, const CString& b) noexcept
    {
        return a.length == b.length && order(a, b) == 0;
    }
    friend bool operator==(const CString& a, const char* b) noexcept { return compare(a, b) == 0; }
    friend bool operator<(const CString& a, const CString& b) noexcept { return order(a, b) < 0; }

private:
    static constexpr int kInlineBytes = 27;

    [[nodiscard]] int bytesFor(int count) const noexcept
    {
        return isWide ? 2 * count + 2 : count + 1;
    }
    // Ends the process when the bytes don't fit the capacity's type.
    [[nodiscard]] int checkedBytesFor(std::int64_t count) const;
    [[nodiscard]] static int orderWide(const CString& a, const CString& b) noexcept;
    [[nodiscard]] static int checkedSum(int a, int b);
    // First room of a new text, with some to spare.
    void makeRoom(std::int64_t count, std::uint8_t wide);
    void moveToHeap(int need, int keptBytes);
    [[nodiscard]] int withSpare(int need) const noexcept;
    // True when `text` points into this text, which growth would move away.
    [[nodiscard]] bool isWithin(const char* text) const noexcept;
    [[nodiscard]] bool matchesAt(int index, const char* text) const noexcept;
    void release() noexcept;
    void takeFrom(CString& other) noexcept;
    void terminate() noexcept;

    char* data;
    std::int32_t capacity = 0;
    std::int32_t length = 0;
    alignas(2) char inlineBuffer[kInlineBytes];
    std::uint8_t isWide = 0;
};

[[nodiscard]] inline int compareKeys(const CString& a, const CString& b) noexcept
{
    return CString::order(a, b);
}
[[nodiscard]] inline int compareKeys(const CString& a, const char* b) noexcept
{
    return CString::compare(a, b);
}

[[nodiscard]] CString operator+(const CString& a, const CString& b);
[[nodiscard]] CString operator+(const CString& a, const char* b);
[[nodiscard]] CString operator+(const char* a, const CString& b);

} // namespace tsm
