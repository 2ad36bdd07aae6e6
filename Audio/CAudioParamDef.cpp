#include "Audio/CAudioParamDef.h"

#include "Core/CText.h"

namespace tsm {

namespace {

EAudioParamType typeOf(const CString& name)
{
    if (name == "string" || name == "str")
        return EAudioParamType::String;
    return name == "raw" ? EAudioParamType::Raw : EAudioParamType::Number;
}

} // namespace

CError* CAudioParamDef::init()
{
    TSM_TRY(CObject::init());
    TSM_TRY(readShape());
    readFlags();
    TSM_TRY(readConverters());
    // Limits and defaults may be written as state names, so these come first.
    TSM_TRY(paramInfo.parseStateNames(getAttrString("state-names")));
    TSM_TRY(paramInfo.parseMinMaxValues(getAttrString("min-values"), getAttrString("max-values")));
    TSM_TRY(paramInfo.defaults.parseDefValues(paramInfo, getAttrString("def-values")));
    if (!paramInfo.defaults.getHasValues())
        TSM_FAIL("@tsmstr_CAudioParamDef_init_NoDefValues No default values specified.");
    return nullptr;
}

void CAudioParamDef::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

CError* CAudioParamDef::readShape()
{
    CAudioParamShape& shape = paramInfo.shape;
    shape.elementSize = getAttr("element-size") ? getAttrInt("element-size") : 1;
    shape.dataType = typeOf(getAttrString("data-type"));
    shape.isSingleGroup = getAttrBool("is-single-group");
    shape.isSingleElement = getAttrBool("is-single-element");
    if (shape.elementSize < 1)
        TSM_FAIL("@tsmstr_CAudioParamDef_init_InvalidElementSize "
                 "Invalid element size %1 specified.",
                 toString(shape.elementSize));
    if (shape.elementSize > 1 && shape.dataType != EAudioParamType::Number)
        TSM_FAIL("@tsmstr_CAudioParamDef_init_ElementSizeStr "
                 "Invalid element size %1 for non-float data specified.",
                 toString(shape.elementSize));
    return nullptr;
}

void CAudioParamDef::readFlags()
{
    paramInfo.isPersistent = getAttrBool("is-persistent");
    paramInfo.isStorable = getAttrBool("is-storable") && !paramInfo.isPersistent;
    paramInfo.isGlobal = getAttrBool("is-global") || paramInfo.isStorable || paramInfo.isPersistent;
    paramInfo.fullName = getFullName();
    paramInfo.visualName = getAttrString("visual-name");
    if (paramInfo.visualName.isEmpty())
        paramInfo.visualName = paramInfo.fullName;
    paramInfo.paramRegistry = getAttrString("param-registry");
}

CError* CAudioParamDef::readConverters()
{
    COwnedArray<CString> names;
    for (const char* attr : {"converter", "converter2", "converter3", "converter4"}) {
        const CString& name = getAttrString(attr);
        if (name.isEmpty())
            break;
        names.create(name);
    }
    TSM_TRY(paramInfo.parseConverterNames(*this, names));
    return nullptr;
}

} // namespace tsm
