#include "Audio/CAudioExtParam.h"

#include "Audio/Converters/CAudioParamConverter.h"
#include "Core/CText.h"

#include <algorithm>
#include <cmath>

namespace tsm {
namespace {

double intoRange(double value) noexcept
{
    return std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0);
}

} // namespace

CAudioExtParam::~CAudioExtParam()
{
    if (!param)
        return;
    const CAudioParamLock hold(*param);
    param->removeTap(*this);
}

void CAudioExtParam::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

CError* CAudioExtParam::init()
{
    TSM_TRY(CObject::init());
    TSM_TRY(findObjectByAttr(collector, "param-collector"));
    extName = getAttrString("ext-name");
    if (extName.isEmpty() || extName.getLength() > kMaxNameLength)
        TSM_FAIL("@tsmstr_CAudioExtParam_init_InvalidExtName "
                 "Externalized parameter name '%1' is too long",
                 extName);
    element = getAttrInt("element-index");
    group = getAttrInt("group");
    if (group < 0 || group >= kMaxParamGroups || element < 0 || element >= kMaxParamElements)
        TSM_FAIL("@tsmstr_CAudioExtParam_init_InvalidPlace "
                 "Invalid group %1 or element index %2 specified.",
                 toString(group), toString(element));
    param = &collector->findOrCreate(getAttrString("param-name"));
    const CAudioParamLock hold(*param);
    param->addTap(*this);
    update();
    return nullptr;
}

void CAudioExtParam::setHostBridge(CAudioExtParamHostBridge* bridge, std::int32_t hostIndex)
{
    const CAudioParamLock hold(*param);
    hostBridge = bridge;
    index = hostIndex;
}

bool CAudioExtParam::isNumber() const
{
    const CAudioParamInfo* info = param->getInfo();
    return info && info->shape.dataType == EAudioParamType::Number;
}

double CAudioExtParam::toNormalized(double real) const
{
    const CAudioParamInfo& info = *param->getInfo();
    return intoRange(info.getConverter(0).realToNorm(info, 0, real));
}

double CAudioExtParam::defaultNormalized() const
{
    return isNumber() ? toNormalized(param->getInfo()->defaults.value(group, element)) : 0.0;
}

// From the parameter to the host

void CAudioExtParam::onChangeMade(const void* source, const CAudioParam&,
                                  const CAudioParamChange& change)
{
    const bool isOwn = source == this && change.group != kAllParamGroups;
    if (!isOwn && concerns(change))
        update();
}

bool CAudioExtParam::concerns(const CAudioParamChange& change) const
{
    if (change.group == kAllParamGroups)
        return true;
    if (change.group != (change.shape.isSingleGroup ? 0 : group))
        return false;
    // What a complete change leaves out reads otherwise behind it, too.
    const std::int32_t held = change.shape.isSingleElement ? 0 : element;
    return change.complete ||
           (change.firstElement <= held && held < change.firstElement + change.elementCount);
}

// The lock is held.
double CAudioExtParam::readModel() const
{
    return isNumber() ? toNormalized(param->getValues().value(group, element)) : 0.0;
}

// The lock is held.
void CAudioExtParam::update()
{
    const double model = readModel();
    if (model == lastModel)
        return;
    lastModel = model;
    lastValue.store(model);
    if (hostBridge)
        collector->addHostUpdate(*hostBridge, index, model);
}

// From the host to the parameter

bool CAudioExtParam::setNormalized(double value)
{
    if (!std::isfinite(value))
        return false;
    const double wanted = intoRange(value);
    const CAudioParamLock hold(*param);
    lastValue.store(wanted);
    if (hostBridge)
        collector->getUpdates().dropForHost(*hostBridge, index);
    if (!isNumber())
        return true;
    const CAudioParamInfo& info = *param->getInfo();
    const double real = info.getConverter(0).normToReal(info, 0, wanted);
    // Hosts repeat values; a change that changes nothing would make the engine work for it.
    if (real != param->getValues().value(group, element))
        param->setValue(group, element, real, this);
    lastModel = readModel();
    return true;
}

// Texts

CString CAudioExtParam::valueText(double normalizedValue) const
{
    CString text;
    const CAudioParamLock hold(*param);
    if (!isNumber())
        return text;
    const CAudioParamInfo& info = *param->getInfo();
    const CAudioParamConverter& converter = info.getConverter(0);
    converter.format(text, info, 0, converter.normToReal(info, 0, intoRange(normalizedValue)),
                     EAudioParamFormat::Normal);
    return text;
}

bool CAudioExtParam::parseText(const CString& text, double& value) const
{
    if (!isNumber())
        return false;
    const CAudioParamInfo& info = *param->getInfo();
    bool isRead = false;
    const double real = info.getConverter(0).parse(info, 0, text, isRead);
    if (isRead)
        value = toNormalized(real);
    return isRead;
}

} // namespace tsm
