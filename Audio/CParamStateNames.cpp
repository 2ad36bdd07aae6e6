#include "Audio/CParamStateNames.h"

#include "Core/CText.h"

namespace tsm {

void CParamStateNames::parse(const CString& text)
{
    clear();
    if (text.isEmpty())
        return;
    COwnedArray<CString> entries;
    splitText(text, ';', entries);
    for (const CString& entry : entries) {
        const int bar = entry.find('|');
        if (bar < 0)
            add(entry, entry);
        else
            add(entry.substring(0, bar), entry.substring(bar + 1));
    }
}

void CParamStateNames::add(const CString& fullName, const CString& shortName)
{
    fullNames.create(fullName);
    shortNames.create(shortName.substring(0, kShortLength));
}

void CParamStateNames::clear()
{
    fullNames.clear();
    shortNames.clear();
}

} // namespace tsm
