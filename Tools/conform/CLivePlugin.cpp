#include "Tools/conform/CLivePlugin.h"

#include <cmath>
#include <random>

namespace tsm {

using namespace Steinberg::Vst;

CError* CLivePlugin::start(const CPlugin& plugin, const CVstSetUp& wanted, CFindings& findings,
                           bool isInPlace)
{
    TSM_TRY(plugin.start(instance, wanted));
    params.emplace(instance.getController());
    run.emplace(instance, wanted, findings, isInPlace);
    return nullptr;
}

void CLivePlugin::set(const CParamValue& value)
{
    instance.getController().setParamNormalized(value.id, value.value);
    run->addPoint(value.id, 0, value.value);
}

void CLivePlugin::setAll(const std::vector<CParamValue>& values)
{
    for (const CParamValue& each : values)
        set(each);
    run->flush();
}

std::vector<CParamValue> CLivePlugin::getAll() const
{
    std::vector<CParamValue> values;
    for (const CVstParam& param : params->getAll())
        if (isUsersOwn(param))
            values.push_back({param.id, params->getValue(param)});
    return values;
}

std::vector<CParamValue> CLivePlugin::drawValues(unsigned seed) const
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> anywhere(0.0, 1.0);
    std::vector<CParamValue> values;
    for (const CVstParam& param : params->getAll()) {
        if (!isUsersOwn(param))
            continue;
        double value = anywhere(generator);
        if (param.stepCount > 0)
            value = std::round(value * param.stepCount) / param.stepCount;
        values.push_back({param.id, param.has(ParameterInfo::kIsBypass) ? 0.0 : value});
    }
    return values;
}

bool isUsersOwn(const CVstParam& param)
{
    return !param.has(ParameterInfo::kIsReadOnly) && !param.has(ParameterInfo::kIsProgramChange);
}

} // namespace tsm
