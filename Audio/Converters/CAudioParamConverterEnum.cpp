#include "Audio/Converters/CAudioParamConverterEnum.h"

#include "Audio/CAudioParamInfo.h"
#include "Core/CRounding.h"
#include "Core/CText.h"

#include <algorithm>

namespace tsm {

namespace {

constexpr int kCompactLength = 3;

/// The names that count for one parameter: the converter's, behind them the parameter's.
class CNameList {
public:
    CNameList(const CParamStateNames& converterNames, const CParamStateNames& paramNames)
        : own(converterNames), other(paramNames)
    {
    }

    [[nodiscard]] int getCount() const { return std::max(own.getCount(), other.getCount()); }

    // How the format shows the state at `index`, which is below the count.
    [[nodiscard]] CString getShown(int index, EAudioParamFormat mode) const
    {
        const CParamStateNames& names = index < own.getCount() ? own : other;
        if (mode == EAudioParamFormat::Long)
            return names.getShort(index);
        if (mode == EAudioParamFormat::Compact)
            return names.getShort(index).substring(0, kCompactLength);
        return names.getFull(index);
    }

    // Names that several states share in a short form stand for the first of them.
    [[nodiscard]] int find(const CString& text) const
    {
        for (const auto mode :
             {EAudioParamFormat::Normal, EAudioParamFormat::Long, EAudioParamFormat::Compact})
            for (int i = 0; i < getCount(); ++i)
                if (getShown(i, mode) == text)
                    return i;
        return -1;
    }

private:
    const CParamStateNames& own;
    const CParamStateNames& other;
};

} // namespace

void CAudioParamConverterEnum::format(CString& out, const CAudioParamInfo& info, int e, double real,
                                      EAudioParamFormat mode) const
{
    const CNameList names(stateNames, info.stateNames);
    // In 64 bits: damaged data may bring any numbers.
    const std::int64_t index =
        std::int64_t(roundToInt(real)) - std::int64_t(roundToInt(info.minValues[e]));
    if (names.getCount() == 0)
        out = toString(roundToInt(real));
    else if (index >= 0 && index < names.getCount())
        out = names.getShown(static_cast<int>(index), mode);
    else
        out = mode == EAudioParamFormat::Compact ? "Rsv" : "Reserve";
}

bool CAudioParamConverterEnum::readDisplay(const CAudioParamInfo& info, int e, const CString& text,
                                           double& display) const
{
    std::int32_t number = 0;
    if (parseWholeInt(text, number)) {
        display = number;
        return true;
    }
    const int index = CNameList(stateNames, info.stateNames).find(text);
    if (index < 0)
        return false;
    display = index + roundHalfAway(info.minValues[e]);
    return true;
}

CError* CAudioParamConverterEnum::init()
{
    TSM_TRY(CAudioParamConverterRound::init());
    TSM_TRY(readStateNames());
    return nullptr;
}

CError* CAudioParamConverterEnum::readStateNames()
{
    stateNames.parse(getAttrString("state-names"));
    return nullptr;
}

void CAudioParamConverterEnum::declareClass(CObjectClassInfo& info)
{
    CAudioParamConverterRound::declareClass(info);
}

} // namespace tsm
