#include "Audio/CParamRemapTable.h"

#include "Audio/CParamName.h"

namespace tsm {

void CParamRemapTable::begin(const CString& processPath)
{
    path = processPath;
    pairs.clear();
}

void CParamRemapTable::add(const CString& origName, const CString& newName)
{
    pairs[origName] = resolveName(newName, path);
}

bool CParamRemapTable::apply(CString& fullName) const
{
    const int length = path.getLength();
    if (pairs.isEmpty() || fullName.getLength() <= length || fullName.at(length) != '.' ||
        !(fullName.substring(0, length) == path))
        return false;
    const CString* target = pairs.find(fullName.substring(length + 1));
    if (!target)
        return false;
    fullName = *target;
    return true;
}

} // namespace tsm
