#include "Audio/CAudioParamRemapDef.h"

#include "Core/CText.h"

namespace tsm {

CError* CAudioParamRemapDef::init()
{
    TSM_TRY(CObject::init());
    const CString& orig = getAttrString("orig");
    const CString& target = getAttrString("new");
    if (!orig.isEmpty() && !target.isEmpty())
        addPair(orig, target);
    return nullptr;
}

CError* CAudioParamRemapDef::initChilds()
{
    TSM_TRY(CObject::initChilds());
    if (const CObject* content = findChild("content"))
        TSM_TRY(readList(content->getAttrString("value")));
    if (pairs.isEmpty())
        TSM_FAIL("@tsmstr_CAudioParamRemapDef_init_NoRemapsDefined No remappings defined.");
    return nullptr;
}

void CAudioParamRemapDef::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

void CAudioParamRemapDef::addPair(const CString& origName, const CString& newName)
{
    CPair& pair = pairs.create();
    pair.origName = origName;
    pair.newName = newName;
}

CError* CAudioParamRemapDef::readList(const CString& text)
{
    COwnedArray<CString> entries;
    if (text.find(';') >= 0)
        splitText(text, ';', entries);
    else
        splitWords(text, entries);
    for (const CString& entry : entries)
        if (!entry.trimmed().isEmpty())
            TSM_TRY(readEntry(entry));
    return nullptr;
}

CError* CAudioParamRemapDef::readEntry(const CString& entry)
{
    COwnedArray<CString> sides;
    splitText(entry, '=', sides);
    const bool isPair =
        sides.getCount() == 2 && !sides[0].trimmed().isEmpty() && !sides[1].trimmed().isEmpty();
    if (!isPair)
        TSM_FAIL("@tsmstr_CAudioParamRemapDef_init_InvalidRemap "
                 "Invalid remapping string '%1' defined.",
                 entry.trimmed());
    addPair(sides[0].trimmed(), sides[1].trimmed());
    return nullptr;
}

} // namespace tsm
