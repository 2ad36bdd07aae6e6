#pragma once

#include "Core/COwnedArray.h"
#include "Core/CString.h"

namespace tsm {

/// The names of an enumeration's states: a long and a short one (at most 7 characters) each.
class CParamStateNames : public CCheckedObject {
public:
    CParamStateNames() = default;
    CParamStateNames(CParamStateNames&&) noexcept = default;
    CParamStateNames& operator=(CParamStateNames&&) noexcept = default;

    /// Reads a list divided by ";", each entry a name, or a long and a short one as "full|short".
    /// An empty text has no entries.
    void parse(const CString& text);
    void add(const CString& fullName, const CString& shortName);
    void clear();
    [[nodiscard]] int getCount() const noexcept { return fullNames.getCount(); }
    [[nodiscard]] const CString& getFull(int index) const noexcept { return fullNames[index]; }
    [[nodiscard]] const CString& getShort(int index) const noexcept { return shortNames[index]; }

    static constexpr int kShortLength = 7;

private:
    COwnedArray<CString> fullNames;
    COwnedArray<CString> shortNames;
};

} // namespace tsm
