#include "Tools/conform/CFindings.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/hostlib/CVstParams.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <set>
#include <string>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int32 kMaxPrograms = 100000;

void expectText(const TChar (&field)[128], const std::string& what, CFindings& findings)
{
    findings.expect(std::find(std::begin(field), std::end(field), 0) != std::end(field), what,
                    "a text that ends within its field", "no end");
    findings.expect(field[0] != 0, what, "a text", "an empty one");
}

void checkUnits(IUnitInfo& units, const std::set<ProgramListID>& lists, CFindings& findings)
{
    const int32 count = units.getUnitCount();
    findings.expect(count >= 1, "units", "the root at least", std::to_string(count));
    std::set<UnitID> ids;
    for (int32 i = 0; i < count; ++i) {
        UnitInfo info = {};
        const std::string name = "unit " + std::to_string(i);
        findings.expectOk("getUnitInfo() of " + name, units.getUnitInfo(i, info));
        expectText(info.name, name + ", name", findings);
        findings.expect(ids.insert(info.id).second, name + ", id", "one of its own",
                        std::to_string(info.id) + " again");
        findings.expect(info.programListId == kNoProgramListId ||
                            lists.contains(info.programListId),
                        name + ", program list", "one that there is, or none",
                        std::to_string(info.programListId));
        if (i == 0) {
            findings.expectEqual("the first unit, id", kRootUnitId, info.id);
            findings.expectEqual("the first unit, parent", kNoParentUnitId, info.parentUnitId);
        }
    }
    for (const int32 index : {-1, count, INT_MAX}) {
        UnitInfo info = {};
        findings.expectRefused("getUnitInfo() of index " + std::to_string(index),
                               units.getUnitInfo(index, info));
    }
    findings.expectOk("selectUnit() of the root", units.selectUnit(kRootUnitId));
    findings.expectEqual("the selected unit", kRootUnitId, units.getSelectedUnit());
}

void checkPrograms(IUnitInfo& units, const ProgramListInfo& list, CFindings& findings)
{
    const std::string name = "program list " + std::to_string(list.id);
    String128 text = {};
    for (int32 i = 0; i < std::clamp(list.programCount, 0, kMaxPrograms); ++i) {
        text[0] = 0;
        findings.expectOk("getProgramName() of " + name, units.getProgramName(list.id, i, text));
        expectText(text, name + ", name of program " + std::to_string(i), findings);
    }
    for (const int32 index : {-1, list.programCount, INT_MAX})
        findings.expectRefused("getProgramName() of " + name + ", index " + std::to_string(index),
                               units.getProgramName(list.id, index, text));
    units.getProgramInfo(list.id, 0, "MusicalStyle", text);
    units.hasProgramPitchNames(list.id, 0);
    units.getProgramPitchName(list.id, 0, 60, text);
}

CError* checkInfos(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IUnitInfo* const units = instance.getUnits();
    if (!units) {
        findings.skip("no units");
        return nullptr;
    }
    std::set<ProgramListID> lists;
    const int32 count = units->getProgramListCount();
    for (int32 i = 0; i < count; ++i) {
        ProgramListInfo list = {};
        findings.expectOk("getProgramListInfo()", units->getProgramListInfo(i, list));
        expectText(list.name, "program list " + std::to_string(i) + ", name", findings);
        findings.expect(lists.insert(list.id).second, "ids of program lists",
                        "each list has its own", std::to_string(list.id) + " again");
        findings.expect(list.programCount >= 0, "programs of a list", "0 or more",
                        std::to_string(list.programCount));
        checkPrograms(*units, list, findings);
    }
    checkUnits(*units, lists, findings);
    String128 text = {};
    ProgramListInfo list = {};
    for (const int32 index : {-1, count, INT_MAX})
        findings.expectRefused("getProgramListInfo() of index " + std::to_string(index),
                               units->getProgramListInfo(index, list));
    for (const ProgramListID id : {-1, -2, INT_MAX})
        if (!lists.contains(id))
            findings.expectRefused("getProgramName() of an unknown list",
                                   units->getProgramName(id, 0, text));
    UnitID unit = 0;
    units->getUnitByBus(kAudio, kInput, 0, 0, unit);
    units->getUnitByBus(7, 7, -1, -1, unit);
    units->setUnitProgramData(INT_MAX, -1, nullptr);
    return nullptr;
}

/// The list that a program parameter chooses from: that of its unit.
bool findList(IUnitInfo& units, UnitID unitId, ProgramListInfo& list)
{
    ProgramListID wanted = kNoProgramListId;
    for (int32 i = 0; i < units.getUnitCount(); ++i) {
        UnitInfo unit = {};
        if (units.getUnitInfo(i, unit) == kResultOk && unit.id == unitId)
            wanted = unit.programListId;
    }
    for (int32 i = 0; i < units.getProgramListCount(); ++i)
        if (units.getProgramListInfo(i, list) == kResultOk && list.id == wanted)
            return true;
    return false;
}

void choosePrograms(const CVstInstance& instance, const CVstParam& param,
                    const ProgramListInfo& list, CFindings& findings)
{
    IEditController& controller = instance.getController();
    const CVstParams params(controller);
    for (int32 i = 0; i < std::min(list.programCount, kMaxPrograms); ++i) {
        const double value = param.stepCount > 0 ? static_cast<double>(i) / param.stepCount : 0.0;
        const std::string name = "program " + std::to_string(i);
        String128 wanted = {};
        String128 text = {};
        instance.getUnits()->getProgramName(list.id, i, wanted);
        controller.getParamStringByValue(param.id, value, text);
        findings.expect(std::u16string(wanted) == text, "text of the parameter at " + name,
                        inQuotes(wanted), inQuotes(text));
        findings.expectOk("setParamNormalized() for " + name,
                          controller.setParamNormalized(param.id, value));
        const double came = controller.getParamNormalized(param.id);
        findings.expect(std::abs(came - value) < 1e-6, "the program's parameter behind it",
                        numberText(value), numberText(came));
        for (const CVstParam& each : params.getAll()) {
            const double now = params.getValue(each);
            findings.expect(now >= 0.0 && now <= 1.0, inQuotes(each.title.toUtf8()) + " in " + name,
                            "0 to 1", numberText(now));
        }
        std::string state;
        CError* const error = instance.getState(state);
        findings.expect(!handleError(error), "the state in " + name, "one", "a refusal");
    }
}

CError* checkChoice(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    const CVstParams params(instance.getController());
    const CVstParam* const param = params.findProgramParam();
    ProgramListInfo list = {};
    if (!param || !instance.getUnits()) {
        findings.skip("no program parameter");
        return nullptr;
    }
    ParameterInfo info = {};
    for (int32 i = 0; i < instance.getController().getParameterCount(); ++i) {
        instance.getController().getParameterInfo(i, info);
        if (info.id == param->id)
            break;
    }
    if (!findings.expect(findList(*instance.getUnits(), info.unitId, list),
                         "the program parameter's unit", "one with a program list", "none"))
        return nullptr;
    findings.expectEqual("steps of the program parameter", std::max(list.programCount - 1, 0),
                         param->stepCount);
    choosePrograms(instance, *param, list, findings);
    findings.note(std::to_string(list.programCount) + " programs");
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"units.info", "units, program lists, names; indices and ids that don't exist", checkInfos},
    {"units.programs", "each program chosen by its parameter", checkChoice},
};

} // namespace

std::span<const CConformCase> unitCases()
{
    return kCases;
}

} // namespace tsm
