#include "Audio/CAudioProcessDefBase.h"

#include "Core/CText.h"

namespace tsm {
namespace {

EInputCombo parseInputCombo(const CString& text)
{
    if (text == "avg")
        return EInputCombo::Mean;
    return text == "max" ? EInputCombo::Maximum : EInputCombo::Sum;
}

} // namespace

CError* CAudioProcessDefBase::init()
{
    TSM_TRY(CAudioProcessDefBaseInit::init());
    isSmoothUpdate = getAttrBool("is-smooth-update");
    isStacked = getAttrBool("is-stacked");
    stackParam = getAttrString("stack-param");
    stackIndexShift = getAttrInt("stack-index-shift");
    if (stackIndexShift < 0)
        TSM_FAIL("@tsmstr_CAudioProcessDefBase_init_InvalidStackIndexShift "
                 "Invalid stack index shift value '%1' specified.",
                 toString(stackIndexShift));
    isTerminalWhole = getAttrBool("is-terminal-whole");
    isPrototype = getAttrBool("is-prototype");
    isOutOfOrder = getAttrBool("is-outoforder");
    isCompInput = getAttrBool("is-comp-input");
    inputCombo = parseInputCombo(getAttrString("input-combo-mode"));
    // Id 0 is a real state, so an absent attribute must not read as 0.
    if (const CAttrValue* value = getAttr("bypass-state-id"))
        if (value->getType() == EAttrType::None || !value->toInt(bypassStateId))
            bypassStateId = -1;
    if (const CAttrValue* value = getAttr("xfade-length"))
        (void)value->toDouble(xfadeLength);
    return nullptr;
}

} // namespace tsm
