#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tsm {

/// Rules for the words and texts of a definition document.
class CDefText {
public:
    /// Place of the first byte that no document may hold, npos when there is none: control
    /// characters but for tab and line ends, malformed UTF-8 (RFC 3629), and characters above
    /// U+FFFF, which the 16-bit strings of the program cannot hold.
    static std::size_t findBad(std::string_view text);

    /// Blank runs become one blank, none is left at the ends.
    static std::string normalizeSpace(std::string_view text);

    /// A class tag such as `audio:param`.
    static bool isTag(std::string_view text);

    /// A name that paths can lead to: none of the characters with a meaning in paths or in
    /// `{...}` references. `#` with digits behind it may end it; empty is no name.
    static bool isName(std::string_view text);

    /// The key of an attribute.
    static bool isKey(std::string_view text);

    /// The elements of the authoring layer; no object can have one of these as its tag.
    static bool isReservedTag(std::string_view text);
};

} // namespace tsm
