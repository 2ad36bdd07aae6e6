#include "Tools/hostlib/VstModuleInfo.h"

#include "Tools/hostlib/CVstString.h"

#include <nlohmann/json.hpp>

namespace tsm {

using namespace Steinberg;
using nlohmann::ordered_json;

namespace {

ordered_json describeFactory(const PFactoryInfo& info)
{
    const auto has = [&](int32 flag) { return (info.flags & flag) != 0; };
    return {{"Vendor", fromVstField(info.vendor).toUtf8()},
            {"URL", fromVstField(info.url).toUtf8()},
            {"E-Mail", fromVstField(info.email).toUtf8()},
            {"Flags",
             {{"Unicode", has(PFactoryInfo::kUnicode)},
              {"Classes Discardable", has(PFactoryInfo::kClassesDiscardable)},
              {"Component Non Discardable", has(PFactoryInfo::kComponentNonDiscardable)}}}};
}

ordered_json describeClass(const CVstClass& each)
{
    ordered_json subCategories = ordered_json::array();
    for (const CString& category : each.subCategories)
        subCategories.push_back(category.toUtf8());
    return {{"CID", toIdText(each.id)},         {"Category", each.category.toUtf8()},
            {"Name", each.name.toUtf8()},       {"Vendor", each.vendor.toUtf8()},
            {"Version", each.version.toUtf8()}, {"SDKVersion", each.sdkVersion.toUtf8()},
            {"Sub Categories", subCategories},  {"Class Flags", each.flags},
            {"Cardinality", each.cardinality}};
}

} // namespace

std::string makeModuleInfo(const CVstBundle& bundle)
{
    ordered_json classes = ordered_json::array();
    for (const CVstClass& each : bundle.getClasses())
        classes.push_back(describeClass(each));
    const std::string version =
        bundle.getClasses().empty() ? "" : bundle.getClasses().front().version.toUtf8();
    const ordered_json info = {{"Name", bundle.getPath().stem().string()},
                               {"Version", version},
                               {"Factory Info", describeFactory(bundle.getFactoryInfo())},
                               {"Classes", classes}};
    return info.dump(2) + "\n";
}

} // namespace tsm
