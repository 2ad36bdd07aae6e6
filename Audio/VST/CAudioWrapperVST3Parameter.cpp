#include "Audio/VST/CAudioWrapperVST3Parameter.h"

#include "Audio/CAudioExtParam.h"
#include "Audio/Converters/CAudioParamConverter.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"
#include "Audio/VST/StringVST.h"

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr const char* kBypassTitle = "Bypass";

ParameterInfo describe(const tsm::CAudioExtParam& param, int index)
{
    ParameterInfo info{};
    info.id = static_cast<ParamID>(index);
    writeText(param.getExtName(), info.title);
    if (const tsm::CAudioParamInfo* known = param.getParam().getInfo())
        writeText(known->getConverter(0).getLabel(), info.units);
    info.defaultNormalizedValue = param.defaultNormalized();
    info.unitId = kRootUnitId;
    info.flags = ParameterInfo::kCanAutomate;
    if (param.getExtName() == kBypassTitle) {
        info.flags |= ParameterInfo::kIsBypass;
        info.stepCount = 1;
    }
    return info;
}

} // namespace

CAudioWrapperVST3Parameter::CAudioWrapperVST3Parameter(tsm::CAudioExtParam& param, int index)
    : Parameter(describe(param, index)), extParam(param)
{
    follow(param.normalized());
}

void CAudioWrapperVST3Parameter::toString(ParamValue value, String128 out) const
{
    writeText(extParam.valueText(value), out);
}

bool CAudioWrapperVST3Parameter::fromString(const TChar* text, ParamValue& value) const
{
    if (!extParam.parseText(readText(text), value))
        value = getNormalized();
    return true;
}

void CAudioWrapperVST3Parameter::changed()
{
    extParam.setNormalized(getNormalized());
    Parameter::changed();
}

void CAudioWrapperVST3Parameter::follow(ParamValue value) noexcept
{
    valueNormalized.store(value);
}
