#include "Tools/monitor/CMonitorParam.h"

#include "Audio/Converters/CAudioParamConverter.h"

namespace tsm {

void CMonitorParam::onChange(CAudioParamChange& change)
{
    CParamMirror::onChange(change);
    if (getInfo())
        tell(*this);
}

CString CMonitorParam::getTitle() const
{
    return getInfo() && !getInfo()->visualName.isEmpty() ? getInfo()->visualName : name;
}

std::string CMonitorParam::getText() const
{
    if (!getInfo() || getInfo()->shape.dataType == EAudioParamType::Raw)
        return {};
    if (getInfo()->shape.dataType == EAudioParamType::String)
        return getValues().text(0, 0).toUtf8();
    CString text;
    const CAudioParamConverter& converter = getInfo()->getConverter(0);
    converter.format(text, *getInfo(), 0, getValues().value(0, 0), EAudioParamFormat::Normal);
    return (text + converter.getLabel()).toUtf8();
}

CError* CMonitorParam::makeChange(const CString& text, CAudioParamChange& change) const
{
    if (!getInfo() || getInfo()->shape.dataType == EAudioParamType::Raw ||
        getInfo()->shape.elementSize != 1)
        TSM_FAIL("parameter '%1' takes no texts", name);
    change.shape = getInfo()->shape;
    change.elementCount = 1;
    if (change.shape.dataType == EAudioParamType::String) {
        change.addItem(CPtr<CAudioParamDataItem>(new CAudioParamDataItemString(text)));
        return nullptr;
    }
    bool isReadable = true;
    change.values.add(getInfo()->getConverter(0).parse(*getInfo(), 0, text, isReadable));
    if (!isReadable)
        TSM_FAIL("can't read '%1' as a value of parameter '%2'", text, name);
    return nullptr;
}

} // namespace tsm
