#include "Tools/engine/CEngineParams.h"

#include "Audio/Converters/CAudioParamConverter.h"
#include "Core/CText.h"
#include "Tools/Support/CToolTable.h"
#include "Tools/engine/CParamTexts.h"
#include "Tools/engine/EngineNames.h"

#include <algorithm>

namespace tsm {

namespace {

/// Parameters without a description are the definition's own plumbing.
bool isReachable(const CAudioParam& param)
{
    return param.getInfo() && param.getInfo()->isGlobal;
}

/// Whether a text for the parameter holds several values.
bool isList(const CAudioParamInfo& info)
{
    return !info.shape.isSingleElement && info.defaults.getElementCount(0) > 1;
}

} // namespace

CError* CEngineParams::find(CAudioParam*& param, const CString& name) const
{
    param = collector.find(kMainPath + name);
    if (!param || !isReachable(*param))
        TSM_FAIL("unknown parameter '%1' (see --list)", name);
    if (param->getInfo()->shape.dataType == EAudioParamType::Raw)
        TSM_FAIL("parameter '%1' holds binary data", name);
    return nullptr;
}

CError* CEngineParams::findNumeric(CAudioParam*& param, const CString& name)
{
    TSM_TRY(find(param, name));
    if (param->getInfo()->shape.dataType != EAudioParamType::Number)
        TSM_FAIL("parameter '%1' holds text, which can't be automated", name);
    noteSet(name);
    return nullptr;
}

CError* CEngineParams::parse(double& value, const CAudioParam& param, const CString& name,
                             const CString& text) const
{
    const CAudioParamInfo& info = *param.getInfo();
    const CAudioParamConverter& converter = info.getConverter(0);
    bool isReadable = false;
    const double unclamped = converter.parseUnclamped(info, 0, text, isReadable);
    if (!isReadable)
        TSM_FAIL("can't read '%1' as a value of parameter '%2'", text, name);
    value = converter.parse(info, 0, text, isReadable);
    if (value != unclamped)
        TSM_FAIL("value '%1' of parameter '%2' is outside of %3", text, name,
                 CParamTexts(param).range());
    return nullptr;
}

CError* CEngineParams::set(const CNamedText& setting)
{
    CAudioParam* param = nullptr;
    TSM_TRY(find(param, setting.name));
    if (param->getInfo()->shape.dataType == EAudioParamType::String)
        param->setText(0, 0, setting.text);
    else
        TSM_TRY(setNumbers(*param, setting));
    noteSet(setting.name);
    return nullptr;
}

CError* CEngineParams::setNumbers(CAudioParam& param, const CNamedText& setting) const
{
    // A comma also is a decimal separator: it divides values only where there are several.
    COwnedArray<CString> pieces;
    if (isList(*param.getInfo()))
        splitText(setting.text, ',', pieces);
    else
        pieces.create(setting.text);
    const int capacity = std::max(param.getInfo()->defaults.getElementCount(0), 1);
    if (pieces.getCount() > capacity)
        TSM_FAIL("'%1' holds more values than the %2 of parameter '%3'", setting.text,
                 toString(capacity), setting.name);
    CArray<double> values;
    for (const CString& piece : pieces) {
        double value = 0.0;
        TSM_TRY(parse(value, param, setting.name, piece.trimmed()));
        values.add(value);
    }
    param.setValues(0, 0, values.data(), values.getCount());
    return nullptr;
}

void CEngineParams::noteSet(const CString& name)
{
    if (std::find(setNames.begin(), setNames.end(), name) == setNames.end())
        setNames.push_back(name);
}

std::vector<CString> CEngineParams::getNames() const
{
    CArray<CAudioParam*> params;
    collector.listParams(params);
    const int prefixLength = CString(kMainPath).getLength();
    std::vector<CString> names;
    for (const CAudioParam* param : params)
        if (isReachable(*param) && param->getName().startsWith(kMainPath))
            names.push_back(param->getName().substring(prefixLength));
    return names;
}

std::string CEngineParams::list() const
{
    std::vector<CToolRow> rows{
        {CString("Name"), "Visual name", "Range", "Default", "Unit", "Present"}};
    for (const CString& name : getNames()) {
        const CAudioParam& param = *collector.find(kMainPath + name);
        const CParamTexts texts(param);
        rows.push_back({name, param.getInfo()->visualName, texts.range(), texts.defaults(),
                        texts.unit(), texts.present()});
    }
    return layOutTable(rows);
}

std::vector<CNamedText> CEngineParams::getTextsOfSet() const
{
    std::vector<CNamedText> texts;
    for (const CString& name : setNames)
        if (const CAudioParam* param = collector.find(kMainPath + name))
            texts.push_back({name, CParamTexts(*param).present()});
    return texts;
}

} // namespace tsm
