#include "Audio/CAudioParamFilterDef.h"

#include "Audio/CParamName.h"
#include "Core/CText.h"

namespace tsm {

namespace {

void readNames(const CString& text, COwnedArray<CString>& names)
{
    COwnedArray<CString> pieces;
    splitText(text, ',', pieces);
    for (const CString& piece : pieces) {
        const CString name = piece.trimmed();
        if (!name.isEmpty())
            names.create(name);
    }
}

void resolveNames(const COwnedArray<CString>& names, const CString& path,
                  COwnedArray<CString>& fullNames)
{
    for (const CString& name : names)
        fullNames.create(resolveName(name, path));
}

} // namespace

CError* CAudioParamFilterDef::init()
{
    TSM_TRY(CObject::init());
    readNames(getAttrString("src"), srcNames);
    if (srcNames.isEmpty())
        TSM_FAIL("@tsmstr_CAudioParamFilterDef_init_NoSrc No source parameters defined.");
    readNames(getAttrString("dst"), dstNames);
    if (dstNames.isEmpty())
        TSM_FAIL("@tsmstr_CAudioParamFilterDef_init_NoDst No destination parameters defined.");
    return nullptr;
}

void CAudioParamFilterDef::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

CError* CAudioParamFilterDef::makeFilter(CPtr<CAudioParamFilter>& filter,
                                         CAudioProcessBase* process,
                                         CAudioParamCollector& collector,
                                         const CString& processPath) const
{
    COwnedArray<CString> src;
    COwnedArray<CString> dst;
    resolveNames(srcNames, processPath, src);
    resolveNames(dstNames, processPath, dst);
    CPtr<CAudioParamFilter> made(createFilter());
    TSM_TRY(made->init(process, collector, src, dst));
    made->attach();
    filter.reset(made.release());
    return nullptr;
}

} // namespace tsm
