#include "Tools/host/CHostReport.h"

#include "Core/CText.h"
#include "Tools/Support/CToolTable.h"
#include "Tools/hostlib/CVstPrograms.h"
#include "Tools/hostlib/CVstString.h"

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

CString joined(const std::vector<CString>& pieces, const char* divider)
{
    CString text;
    for (const CString& piece : pieces)
        text += (text.isEmpty() ? CString() : CString(divider)) + piece;
    return text;
}

void addBuses(const CVstInstance& instance, std::vector<CToolRow>& rows)
{
    struct CKind {
        MediaType type;
        BusDirection dir;
        const char* label;
    };
    IComponent& component = instance.getComponent();
    for (const CKind& kind :
         {CKind{kAudio, kInput, "Audio input"}, CKind{kAudio, kOutput, "Audio output"},
          CKind{kEvent, kInput, "Event input"}, CKind{kEvent, kOutput, "Event output"}})
        for (int32 i = 0; i < component.getBusCount(kind.type, kind.dir); ++i) {
            BusInfo info = {};
            if (component.getBusInfo(kind.type, kind.dir, i, info) != kResultOk)
                continue;
            const bool isOn = (info.flags & BusInfo::kDefaultActive) != 0;
            rows.push_back({kind.label, fromVstText(info.name) + ", " +
                                            toString(info.channelCount) + " channels, " +
                                            (info.busType == kMain ? "main" : "aux") +
                                            (isOn ? ", active" : "")});
        }
}

CString sampleSizes(IAudioProcessor& processor)
{
    std::vector<CString> sizes;
    if (processor.canProcessSampleSize(kSample32) == kResultTrue)
        sizes.emplace_back("32 bits");
    if (processor.canProcessSampleSize(kSample64) == kResultTrue)
        sizes.emplace_back("64 bits");
    return joined(sizes, ", ");
}

CString kindOf(const CVstParam& param)
{
    struct CFlagRow {
        ParameterInfo::ParameterFlags flag;
        const char* name;
    };
    std::vector<CString> names;
    for (const CFlagRow& row :
         {CFlagRow{ParameterInfo::kCanAutomate, "automate"},
          CFlagRow{ParameterInfo::kIsReadOnly, "read-only"},
          CFlagRow{ParameterInfo::kIsList, "list"}, CFlagRow{ParameterInfo::kIsHidden, "hidden"},
          CFlagRow{ParameterInfo::kIsProgramChange, "program"},
          CFlagRow{ParameterInfo::kIsBypass, "bypass"}})
        if (param.has(row.flag))
            names.emplace_back(row.name);
    return joined(names, ",");
}

} // namespace

std::string tellInfo(const CVstBundle& bundle, const CVstClass& effect,
                     const CVstInstance& instance)
{
    const PFactoryInfo& factory = bundle.getFactoryInfo();
    const CVstParams params(instance.getController());
    std::vector<CToolRow> rows{
        {"Bundle", CString::fromUtf8(bundle.getPath().string())},
        {"Vendor", fromVstField(factory.vendor)},
        {"URL", fromVstField(factory.url)},
        {"E-mail", fromVstField(factory.email)},
        {"Class", effect.name},
        {"Class id", CString::fromUtf8(toIdText(effect.id))},
        {"Category", effect.category + (effect.subCategories.empty() ? "" : ": ") +
                         joined(effect.subCategories, "|")},
        {"Version", effect.version},
        {"Interface", effect.sdkVersion},
    };
    addBuses(instance, rows);
    rows.push_back({"Samples", sampleSizes(instance.getProcessor())});
    rows.push_back({"Parameters", toString(static_cast<int>(params.getAll().size()))});
    rows.push_back(
        {"Programs", toString(static_cast<int>(CVstPrograms(instance, params).getNames().size()))});
    return layOutTable(rows);
}

std::string tellParams(const CVstInstance& instance)
{
    const CVstParams params(instance.getController());
    std::vector<CToolRow> rows{{"Id", "Title", "Range", "Default", "Unit", "Present", "Kind"}};
    for (const CVstParam& param : params.getAll())
        rows.push_back({toString(param.id), param.title,
                        params.toText(param, 0.0) + " to " + params.toText(param, 1.0),
                        params.toText(param, param.defaultValue), param.units,
                        params.toText(param, params.getValue(param)), kindOf(param)});
    return layOutTable(rows);
}

std::string tellPrograms(const CVstInstance& instance)
{
    const CVstPrograms programs(instance, CVstParams(instance.getController()));
    std::vector<CToolRow> rows;
    for (const CString& name : programs.getNames())
        rows.push_back({toString(static_cast<int>(rows.size())), name});
    return layOutTable(rows);
}

} // namespace tsm
