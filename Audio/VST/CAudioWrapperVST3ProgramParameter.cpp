#include "Audio/VST/CAudioWrapperVST3ProgramParameter.h"

#include "Audio/CAudioParamRegistry.h"
#include "Audio/CAudioWrapper.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"
#include "Audio/VST/StringVST.h"
#include "Core/CRounding.h"

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

ParameterInfo describe(int programCount)
{
    ParameterInfo info{};
    info.id = CAudioWrapperVST3ProgramParameter::kId;
    writeText("Program", info.title);
    info.stepCount = programCount - 1;
    info.unitId = kRootUnitId;
    info.flags = ParameterInfo::kIsProgramChange | ParameterInfo::kIsList;
    return info;
}

} // namespace

CAudioWrapperVST3ProgramParameter::CAudioWrapperVST3ProgramParameter(
    tsm::CAudioParamRegistry& programs, tsm::CAudioWrapper& owner)
    : Parameter(describe(programs.getProgramCount())), registry(programs), wrapper(owner),
      programCount(programs.getProgramCount())
{
    follow();
}

bool CAudioWrapperVST3ProgramParameter::readName(int index, String128 out) const
{
    tsm::CString name;
    const bool exists = registry.getProgramName(index, name);
    writeText(name, out);
    return exists;
}

ParamValue CAudioWrapperVST3ProgramParameter::follow()
{
    const ParamValue value = toNormalized(registry.getCurrentProgram());
    valueNormalized.store(value);
    return value;
}

void CAudioWrapperVST3ProgramParameter::toString(ParamValue value, String128 out) const
{
    readName(tsm::roundToInt(toPlain(value)), out);
}

bool CAudioWrapperVST3ProgramParameter::fromString(const TChar*, ParamValue&) const
{
    return false;
}

ParamValue CAudioWrapperVST3ProgramParameter::toPlain(ParamValue normalized) const
{
    return normalized * (programCount - 1);
}

ParamValue CAudioWrapperVST3ProgramParameter::toNormalized(ParamValue plain) const
{
    return programCount > 1 ? plain / (programCount - 1) : 0.0;
}

void CAudioWrapperVST3ProgramParameter::changed()
{
    registry.selectProgram(tsm::roundToInt(toPlain(getNormalized())), &wrapper);
    Parameter::changed();
}
