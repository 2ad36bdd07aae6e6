#include "Audio/Converters/CAudioParamConverterText.h"

#include "Audio/CAudioParamInfo.h"

namespace tsm {

double CAudioParamConverterText::parse(const CAudioParamInfo&, int, const CString&, bool& ok) const
{
    ok = false;
    return 0.0;
}

double CAudioParamConverterText::parseUnclamped(const CAudioParamInfo& info, int e,
                                                const CString& text, bool& ok) const
{
    return parse(info, e, text, ok);
}

void CAudioParamConverterText::format(CString& out, const CAudioParamInfo& info, int, double real,
                                      EAudioParamFormat) const
{
    out = info.defaults.textOfId(real);
}

void CAudioParamConverterText::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverter::declareClass(info);
}

} // namespace tsm
