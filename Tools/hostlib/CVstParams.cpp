#include "Tools/hostlib/CVstParams.h"

#include "Core/CText.h"
#include "Tools/hostlib/CVstString.h"

#include <algorithm>
#include <cmath>

#include <strings.h>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// Half a step of the last decimal that a number is shown with.
double halfStep(const CString& shown)
{
    const int point = std::max(shown.find('.'), shown.find(','));
    const int decimals = point < 0 ? 0 : shown.getLength() - point - 1;
    return 0.5 * std::pow(10.0, -decimals);
}

bool isSameWord(const CString& a, const CString& b)
{
    const std::string first = a.trimmed().toUtf8();
    return strcasecmp(first.c_str(), b.trimmed().toUtf8().c_str()) == 0;
}

/// Whether a text may stand for the value that is shown so. Where one is a number and the other is
/// none (an index for a word, a number with its unit) that can't be told.
bool isLikely(const CString& text, const CString& shown)
{
    double wanted = 0.0;
    double taken = 0.0;
    const bool isNumber = parseDouble(text.trimmed(), wanted);
    const bool isShownAsNumber = parseDouble(shown.trimmed(), taken);
    if (isNumber && isShownAsNumber)
        return std::abs(wanted - taken) <= 1.001 * halfStep(shown.trimmed());
    if (!isNumber && isShownAsNumber)
        return text.toUtf8().find_first_of("0123456789") != std::string::npos;
    return isNumber || isSameWord(text, shown);
}

} // namespace

CVstParams::CVstParams(IEditController& owner) : controller(owner)
{
    constexpr int32 kMaxParams = 1 << 16; // beyond that a count is a fault
    const int32 count = std::clamp(owner.getParameterCount(), 0, kMaxParams);
    for (int32 i = 0; i < count; ++i) {
        ParameterInfo info = {};
        if (owner.getParameterInfo(i, info) == kResultOk)
            params.push_back({info.id, fromVstText(info.title), fromVstText(info.units),
                              info.stepCount, info.flags, info.defaultNormalizedValue});
    }
}

CError* CVstParams::find(const CString& title, const CVstParam*& param) const
{
    const auto place =
        std::ranges::find_if(params, [&](const CVstParam& each) { return each.title == title; });
    if (place == params.end())
        TSM_FAIL("unknown parameter '%1' (see list)", title);
    param = &*place;
    return nullptr;
}

const CVstParam* CVstParams::findProgramParam() const
{
    const auto place = std::ranges::find_if(
        params, [](const CVstParam& each) { return each.has(ParameterInfo::kIsProgramChange); });
    return place != params.end() ? &*place : nullptr;
}

CError* CVstParams::parse(const CVstParam& param, const CString& text, double& value) const
{
    std::u16string units = toVstText(text);
    // Plug-ins may take the pointer for one to a String128.
    units.resize(std::max<std::size_t>(units.size(), kString128Size));
    if (controller.getParamValueByString(param.id, units.data(), value) != kResultOk ||
        !(value >= 0.0 && value <= 1.0))
        TSM_FAIL("can't read '%1' as a value of parameter '%2'", text, param.title);
    const CString shown = toText(param, value);
    if (!isLikely(text, shown))
        TSM_FAIL("parameter '%1' takes '%2' for '%3'", param.title, text, shown);
    return nullptr;
}

CString CVstParams::toText(const CVstParam& param, double value) const
{
    String128 text = {};
    if (controller.getParamStringByValue(param.id, value, text) != kResultOk)
        return CString();
    return fromVstText(text);
}

double CVstParams::getValue(const CVstParam& param) const
{
    return controller.getParamNormalized(param.id);
}

void CVstParams::setValue(const CVstParam& param, double value) const
{
    controller.setParamNormalized(param.id, value);
}

} // namespace tsm
