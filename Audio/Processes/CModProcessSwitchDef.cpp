#include "Audio/Processes/CModProcessSwitchDef.h"

#include "Audio/Processes/CModProcessSwitch.h"
#include "Core/CText.h"

namespace tsm {

CError* CModProcessSwitchDef::init()
{
    TSM_TRY(CAudioProcessDefBase::init());
    defaultIndex = getAttrInt("def-index");
    childName = getAttrString("def-child-name");
    COwnedArray<CString> items;
    splitText(getAttrString("process-list"), ';', items);
    for (int i = 0; i < items.getCount(); ++i)
        TSM_TRY(readItem(items[i].trimmed(), i + 1));
    return nullptr;
}

CError* CModProcessSwitchDef::readItem(const CString& item, int number)
{
    const int colon = item.find(static_cast<std::uint16_t>(':'));
    if (colon < 0)
        TSM_FAIL("@tsmstr_CModProcessSwitchDef_init_NoIndex No index delimiter ':' found in item "
                 "#%1.",
                 toString(number));
    const CString indexText = item.substring(0, colon).trimmed();
    std::int32_t index = 0;
    if (!parseWholeInt(indexText, index))
        TSM_FAIL("@tsmstr_CModProcessSwitchDef_init_IndexError Invalid index value '%1' in item "
                 "#%2.",
                 indexText, toString(number));
    if (names.find(index))
        TSM_FAIL("@tsmstr_CModProcessSwitchDef_init_IndexDupeError Duplicate index value '%1' used "
                 "in item #%2.",
                 indexText, toString(number));
    names[index] = item.substring(colon + 1).trimmed();
    return nullptr;
}

CAudioProcessBase* CModProcessSwitchDef::createInstance() const
{
    return new CModProcessSwitch;
}

CError* CModProcessSwitchDef::findProcess(const CAudioProcessDefBase*& target, int index) const
{
    const CString* name = names.find(index);
    if (!name)
        name = names.find(defaultIndex);
    const CString wanted = name ? *name : CString();
    // A name that begins with a point is looked up below this object.
    target = dynamic_cast<const CAudioProcessDefBase*>(findObject(wanted));
    if (!target)
        TSM_FAIL("@tsmstr_CObject_FindError Name attribute '%1' refers to a non-existent object "
                 "'%2' ('%3')",
                 "process-list", wanted, getFullName());
    return nullptr;
}

} // namespace tsm
