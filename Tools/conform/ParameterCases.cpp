#include "Tools/conform/CFindings.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/hostlib/CVstParams.h"

#include "Audio/VST/Interfaces/IUnitInfo.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <set>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

std::string nameOf(const CVstParam& param)
{
    return "parameter " + std::to_string(param.id) + " " + inQuotes(param.title.toUtf8());
}

bool isUnit(double value)
{
    return value >= 0.0 && value <= 1.0; // not a NaN either
}

/// Whether a value that was set may read so: steps snap.
bool isKept(const CVstParam& param, double set, double came)
{
    const double room = param.stepCount > 0 ? 0.5 / param.stepCount : 0.0;
    return std::abs(set - came) <= room + 1e-6;
}

template <std::size_t size>
void expectEnd(const TChar (&field)[size], const std::string& what, CFindings& findings)
{
    findings.expect(std::find(std::begin(field), std::end(field), 0) != std::end(field), what,
                    "a text that ends within its field", "no end");
}

void checkInfo(IEditController& controller, int32 index, CFindings& findings)
{
    ParameterInfo info = {};
    const std::string name = "parameter at index " + std::to_string(index);
    findings.expectOk("getParameterInfo() of " + name, controller.getParameterInfo(index, info));
    expectEnd(info.title, name + ", title", findings);
    expectEnd(info.shortTitle, name + ", short title", findings);
    expectEnd(info.units, name + ", units", findings);
    findings.expect(info.title[0] != 0, name + ", title", "a text", "an empty one");
    findings.expect(info.id != kNoParamId, name + ", id", "one of a parameter",
                    std::to_string(info.id));
    findings.expect(info.stepCount >= 0, name + ", steps", "0 or more",
                    std::to_string(info.stepCount));
    findings.expect(isUnit(info.defaultNormalizedValue), name + ", default", "0 to 1",
                    numberText(info.defaultNormalizedValue));
    constexpr int32 kBoth = ParameterInfo::kCanAutomate | ParameterInfo::kIsReadOnly;
    findings.expect((info.flags & kBoth) != kBoth, name + ", flags",
                    "not both automated and read-only", "both");
    if (info.flags & ParameterInfo::kIsBypass)
        findings.expectEqual(name + ", steps of a bypass", 1, info.stepCount);
    const auto units = queryAs<IUnitInfo>(&controller);
    bool hasUnit = info.unitId == kRootUnitId;
    for (int32 i = 0; units && i < units->getUnitCount(); ++i) {
        UnitInfo unit = {};
        hasUnit = hasUnit || (units->getUnitInfo(i, unit) == kResultOk && unit.id == info.unitId);
    }
    findings.expect(hasUnit, name + ", unit", "one that there is", std::to_string(info.unitId));
}

CError* checkInfos(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IEditController& controller = instance.getController();
    const int32 count = controller.getParameterCount();
    std::set<ParamID> ids;
    int bypassCount = 0;
    for (int32 i = 0; i < count; ++i) {
        checkInfo(controller, i, findings);
        ParameterInfo info = {};
        controller.getParameterInfo(i, info);
        findings.expect(ids.insert(info.id).second, "parameter ids", "each parameter has its own",
                        std::to_string(info.id) + " twice");
        bypassCount += (info.flags & ParameterInfo::kIsBypass) != 0 ? 1 : 0;
    }
    findings.expect(bypassCount <= 1, "parameters with the bypass flag", "at most one",
                    std::to_string(bypassCount));
    for (const int32 index : {-1, count, INT_MAX, INT_MIN}) {
        ParameterInfo info = {};
        findings.expectRefused("getParameterInfo() of index " + std::to_string(index),
                               controller.getParameterInfo(index, info));
    }
    findings.note(std::to_string(count) + " parameters");
    return nullptr;
}

void checkValue(const CVstInstance& instance, const CVstParam& param, CFindings& findings)
{
    IEditController& controller = instance.getController();
    static_cast<void>(instance.getHandler().takeNotes());
    for (const double value : {0.0, 1.0, 0.5, 0.123456789, param.defaultValue, 1.0 / 3.0}) {
        findings.expectOk("setParamNormalized() of " + nameOf(param),
                          controller.setParamNormalized(param.id, value));
        const double came = controller.getParamNormalized(param.id);
        findings.expect(isKept(param, value, came), nameOf(param) + " when set", numberText(value),
                        numberText(came));
    }
    for (const double value : {-1.0, 2.0, -1e300, 1e300, kInf, -kInf, kNan, -0.0, 5e-324}) {
        controller.setParamNormalized(param.id, value);
        const double came = controller.getParamNormalized(param.id);
        findings.expect(isUnit(came), nameOf(param) + " when set to " + numberText(value),
                        "a value of 0 to 1", numberText(came));
    }
    for (const CHostHandler::CNote& note : instance.getHandler().takeNotes())
        findings.expect(note.kind != CHostHandler::EKind::Perform || note.id != param.id,
                        nameOf(param) + " when set by the host",
                        "no performEdit() of the same parameter", "one, which makes hosts loop");
    controller.setParamNormalized(param.id, param.defaultValue);
}

CError* checkValues(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IEditController& controller = instance.getController();
    const CVstParams params(controller);
    for (const CVstParam& param : params.getAll()) {
        findings.expect(isUnit(params.getValue(param)), nameOf(param) + " of a new instance",
                        "0 to 1", numberText(params.getValue(param)));
        if (!param.has(ParameterInfo::kIsReadOnly) && !param.has(ParameterInfo::kIsProgramChange))
            checkValue(instance, param, findings);
    }
    std::set<ParamID> ids;
    for (const CVstParam& param : params.getAll())
        ids.insert(param.id);
    String128 text = u"0";
    for (const ParamID id : {kNoParamId, kMaxParamId, ParamID{0x80000000}, ParamID{12345}}) {
        if (ids.contains(id))
            continue;
        const std::string name = "the unknown parameter " + std::to_string(id);
        double value = 0.0;
        findings.expectRefused("setParamNormalized() of " + name,
                               controller.setParamNormalized(id, 0.5));
        findings.expectRefused("getParamStringByValue() of " + name,
                               controller.getParamStringByValue(id, 0.5, text));
        findings.expectRefused("getParamValueByString() of " + name,
                               controller.getParamValueByString(id, text, value));
        findings.expect(std::isfinite(controller.getParamNormalized(id)), name, "a finite value",
                        "another");
        controller.normalizedParamToPlain(id, 0.5);
        controller.plainParamToNormalized(id, 0.5);
    }
    return nullptr;
}

CError* checkPlain(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IEditController& controller = instance.getController();
    const CVstParams params(controller);
    for (const CVstParam& param : params.getAll()) {
        constexpr int kPieces = 200;
        const double direction = controller.normalizedParamToPlain(param.id, 1.0) -
                                 controller.normalizedParamToPlain(param.id, 0.0);
        double former = 0.0;
        for (int i = 0; i <= kPieces; ++i) {
            const double value = static_cast<double>(i) / kPieces;
            const double plain = controller.normalizedParamToPlain(param.id, value);
            const double back = controller.plainParamToNormalized(param.id, plain);
            findings.expect(std::isfinite(plain) && isKept(param, value, back),
                            nameOf(param) + ", normalized to plain to normalized",
                            numberText(value), numberText(back) + " by " + numberText(plain));
            findings.expect(i == 0 || (plain - former) * direction >= 0.0,
                            nameOf(param) + ", plain values", "all in one direction",
                            "a turn at " + numberText(value));
            former = plain;
        }
        for (const double value : {kNan, kInf, -kInf, 1e300, -1e300}) {
            controller.normalizedParamToPlain(param.id, value);
            controller.plainParamToNormalized(param.id, value);
        }
    }
    return nullptr;
}

/// A text as the plug-in gives it, with room behind it that it may not touch.
bool askText(IEditController& controller, const CVstParam& param, double value,
             std::u16string& text, CFindings& findings)
{
    constexpr std::size_t kBehind = 64;
    constexpr TChar kFill = 0xfffd;
    std::u16string room(kString128Size + kBehind, kFill);
    const std::string what = "text of " + nameOf(param) + " at " + numberText(value);
    const tresult result = controller.getParamStringByValue(param.id, value, room.data());
    const std::size_t end = room.find(u'\0');
    const bool isWhole = room.find_first_not_of(kFill, kString128Size) == std::u16string::npos;
    findings.expect(isWhole, what, "at most 128 units with the end", "more");
    if (result != kResultOk)
        return false;
    const bool hasEnd = end < static_cast<std::size_t>(kString128Size);
    if (!findings.expect(hasEnd, what, "a text that ends", "no end"))
        return false;
    text = room.substr(0, end);
    return true;
}

/// What becomes of one parameter's texts.
struct CTextsRead {
    std::set<std::u16string> readable;
    std::set<std::u16string> ignored; // taken for no change
};

/// The text of a value, and of the value that the plug-in reads from it, must be the same.
void checkTextAt(const CVstInstance& instance, const CVstParam& param, double value,
                 CTextsRead& texts, CFindings& findings)
{
    IEditController& controller = instance.getController();
    std::u16string text;
    const std::string what = nameOf(param) + " at " + numberText(value);
    if (!findings.expect(askText(controller, param, value, text, findings), what, "a text",
                         "a refusal"))
        return;
    findings.expect(!text.empty(), what, "a text", "an empty one");
    double read = kNan;
    std::u16string given = text;
    const tresult result = controller.getParamValueByString(param.id, given.data(), read);
    // Programs are chosen by their number, and what is only shown is never typed.
    if (result != kResultOk &&
        (param.has(ParameterInfo::kIsProgramChange) || param.has(ParameterInfo::kIsReadOnly)))
        return;
    std::u16string again;
    const bool isRead =
        result == kResultOk && isUnit(read) && askText(controller, param, read, again, findings);
    if (isRead && again == text)
        texts.readable.insert(text);
    else if (isRead && param.stepCount == 0 && read == controller.getParamNormalized(param.id))
        texts.ignored.insert(text);
    else
        findings.fail("the value that " + what + " has as a text, " + inQuotes(text.c_str()) +
                          ", read back",
                      "a value of the same text",
                      result == kResultOk ? numberText(read) + ", " + inQuotes(again.c_str())
                                          : resultText(result));
}

/// A range may have values without a name, all with one text that isn't meant to be typed.
void judgeIgnored(const CVstParam& param, const CTextsRead& texts, CFindings& findings)
{
    if (texts.ignored.empty())
        return;
    const std::string first = inQuotes(texts.ignored.begin()->c_str());
    if (texts.ignored.size() == 1 && texts.readable.size() > 1)
        findings.note(nameOf(param) + " doesn't read its text " + first);
    else
        findings.fail("texts of " + nameOf(param) + " read back", "values of the same texts",
                      "no change by " + std::to_string(texts.ignored.size()) + " texts, as " +
                          first);
}

CError* checkTexts(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    const CVstParams params(instance.getController());
    for (const CVstParam& param : params.getAll()) {
        CTextsRead texts;
        const int pieces = param.stepCount > 0 ? std::min(param.stepCount, 1000) : 250;
        for (int i = 0; i <= pieces; ++i)
            checkTextAt(instance, param, static_cast<double>(i) / pieces, texts, findings);
        judgeIgnored(param, texts, findings);
    }
    return nullptr;
}

CError* checkOddTexts(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IEditController& controller = instance.getController();
    const CVstParams params(controller);
    const std::u16string kTexts[] = {u"",
                                     u" ",
                                     u"-",
                                     u"+",
                                     u".",
                                     u",",
                                     u"e",
                                     u"1e",
                                     u"1e999",
                                     u"-1e999",
                                     u"nan",
                                     u"inf",
                                     u"-inf",
                                     u"0x10",
                                     u"1,5",
                                     u"1.5.5",
                                     u"  0.5  ",
                                     u"\u00e9\u4e2d\u221e",
                                     u"99999999999999999999",
                                     std::u16string(127, u'9'),
                                     std::u16string(127, u'x'),
                                     std::u16string(1, char16_t(0xd800)),
                                     std::u16string(1, char16_t(0xdc00)) + u"1",
                                     u"\t\r\n",
                                     u"%n%s%d",
                                     u"On",
                                     u"Off"};
    for (const CVstParam& param : params.getAll()) {
        const double before = params.getValue(param);
        for (std::u16string text : kTexts) {
            double read = 0.5;
            text.resize(kString128Size); // zeros behind it
            if (controller.getParamValueByString(param.id, text.data(), read) == kResultOk)
                findings.expect(isUnit(read),
                                "the value of " + nameOf(param) + " read from " +
                                    inQuotes(text.c_str()),
                                "0 to 1, or a refusal", numberText(read));
        }
        for (const double value : {kNan, kInf, -kInf, -1.0, 2.0, 1e300, -1e300, 5e-324}) {
            std::u16string text;
            askText(controller, param, value, text, findings);
        }
        findings.expect(params.getValue(param) == before,
                        nameOf(param) + " when only asked for texts", numberText(before),
                        numberText(params.getValue(param)));
    }
    return nullptr;
}

/// A parameter with n steps has n + 1 values, each with a text of its own.
CError* checkSteps(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IEditController& controller = instance.getController();
    const CVstParams params(controller);
    int steppedCount = 0;
    for (const CVstParam& param : params.getAll()) {
        if (param.stepCount < 1 || param.stepCount > 1000)
            continue;
        ++steppedCount;
        std::set<std::u16string> texts;
        for (int i = 0; i <= param.stepCount; ++i) {
            const double value = static_cast<double>(i) / param.stepCount;
            std::u16string text;
            std::u16string beside;
            askText(controller, param, value, text, findings);
            texts.insert(text);
            // Hosts keep values as floats.
            askText(controller, param, static_cast<double>(static_cast<float>(value)), beside,
                    findings);
            findings.expect(text == beside,
                            nameOf(param) + ", step " + std::to_string(i) + " as a float",
                            inQuotes(text.c_str()), inQuotes(beside.c_str()));
        }
        findings.expect(param.has(ParameterInfo::kIsProgramChange) ||
                            static_cast<int>(texts.size()) == param.stepCount + 1,
                        nameOf(param) + ", different texts", std::to_string(param.stepCount + 1),
                        std::to_string(texts.size()));
    }
    if (steppedCount == 0)
        findings.skip("no stepped parameters");
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"parameters.info", "descriptions, ids, flags, defaults; indices out of range", checkInfos},
    {"parameters.values", "values set and read; out of range, not a number; unknown ids",
     checkValues},
    {"parameters.plain", "normalized to plain and back over the whole range", checkPlain},
    {"parameters.texts", "values to texts and back over the whole range", checkTexts},
    {"parameters.odd-texts", "texts that are no values, values that are no values", checkOddTexts},
    {"parameters.steps", "each step has a text", checkSteps},
};

} // namespace

std::span<const CConformCase> parameterCases()
{
    return kCases;
}

} // namespace tsm
