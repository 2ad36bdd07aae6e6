#include "Tools/engine/CParamTexts.h"

#include "Audio/Converters/CAudioParamConverter.h"

#include <algorithm>

namespace tsm {

CParamTexts::CParamTexts(const CAudioParam& described)
    : param(described), info(*described.getInfo())
{
}

bool CParamTexts::isNumber() const
{
    return info.shape.dataType == EAudioParamType::Number;
}

CString CParamTexts::range() const
{
    return isNumber() ? format(info.minValues[0]) + " to " + format(info.maxValues[0]) : CString();
}

CString CParamTexts::defaults() const
{
    return join(info.defaults);
}

CString CParamTexts::present() const
{
    const CAudioParamLock lock(param);
    return join(param.getValues());
}

CString CParamTexts::unit() const
{
    return info.getConverter(0).getLabel();
}

CString CParamTexts::format(double real) const
{
    CString text;
    info.getConverter(0).format(text, info, 0, real, EAudioParamFormat::Normal);
    return text;
}

CString CParamTexts::join(const CAudioParamStorage& storage) const
{
    if (info.shape.dataType == EAudioParamType::Raw)
        return CString();
    const int count = info.shape.isSingleElement
                          ? 1
                          : std::max(storage.getElementCount(0), storage.getFallbackCount());
    CString joined;
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            joined += ",";
        joined += isNumber() ? format(storage.value(0, i)) : storage.text(0, i);
    }
    return joined;
}

} // namespace tsm
