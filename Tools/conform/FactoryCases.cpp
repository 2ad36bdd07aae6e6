#include "Tools/conform/CFindings.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/conform/InterfaceIds.h"
#include "Tools/hostlib/CVstString.h"
#include "Tools/hostlib/VstModuleInfo.h"

#include "Audio/VST/Interfaces/Speakers.h"
#include "Audio/VST/VstText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace tsm {

using namespace Steinberg;

namespace {

/// A structure that a plug-in fills, with bytes around it that it may not touch.
template <class Info>
struct CGuarded {
    static constexpr int kFill = 0xa5;
    char before[64];
    Info info;
    char behind[64];

    CGuarded() { std::memset(static_cast<void*>(this), kFill, sizeof *this); }
    [[nodiscard]] bool isWhole() const
    {
        const auto isKept = [](char byte) { return byte == static_cast<char>(kFill); };
        return std::ranges::all_of(before, isKept) && std::ranges::all_of(behind, isKept);
    }
};

template <class Unit, std::size_t size>
void expectEnd(const Unit (&field)[size], const std::string& what, CFindings& findings)
{
    findings.expect(std::find(std::begin(field), std::end(field), Unit{}) != std::end(field), what,
                    "a text that ends within its field", "no end");
}

template <std::size_t size>
CString shown(const char8 (&field)[size])
{
    return fromVstField(field);
}

template <std::size_t size>
CString shown(const char16 (&field)[size])
{
    return fromVstText(std::u16string(fieldText(field)).c_str());
}

CError* checkIdentity(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    for (const CInterfaceFault& fault : findInterfaceFaults(plugin.getFactory()))
        findings.fail("factory: " + fault.what, fault.expected, fault.came);
    return nullptr;
}

CError* checkInfo(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CGuarded<PFactoryInfo> made;
    findings.expectOk("getFactoryInfo()", plugin.getFactory().getFactoryInfo(&made.info));
    findings.expect(made.isWhole(), "getFactoryInfo()", "writes its structure alone",
                    "bytes around it written");
    expectEnd(made.info.vendor, "vendor", findings);
    expectEnd(made.info.url, "URL", findings);
    expectEnd(made.info.email, "e-mail", findings);
    findings.expect(!shown(made.info.vendor).isEmpty(), "vendor", "a name", "an empty text");
    constexpr int32 kKnown = PFactoryInfo::kClassesDiscardable | PFactoryInfo::kLicenseCheck |
                             PFactoryInfo::kComponentNonDiscardable | PFactoryInfo::kUnicode;
    findings.expect((made.info.flags & ~kKnown) == 0, "flags of the factory", "known ones",
                    std::to_string(made.info.flags));
    return nullptr;
}

template <class Info>
void checkFields(const CGuarded<Info>& made, const std::string& name, CFindings& findings)
{
    findings.expect(made.isWhole(), name, "writes its structure alone", "bytes around it written");
    expectEnd(made.info.category, name + ", category", findings);
    expectEnd(made.info.name, name + ", name", findings);
    findings.expect(!shown(made.info.name).isEmpty(), name + ", name", "a name", "an empty text");
    findings.expect(!shown(made.info.category).isEmpty(), name + ", category", "a category",
                    "an empty text");
    findings.expectEqual(name + ", cardinality", PClassInfo::kManyInstances, made.info.cardinality);
}

template <class Info>
void checkLongFields(const CGuarded<Info>& made, const std::string& name, CFindings& findings)
{
    checkFields(made, name, findings);
    expectEnd(made.info.subCategories, name + ", sub-categories", findings);
    expectEnd(made.info.vendor, name + ", vendor", findings);
    expectEnd(made.info.version, name + ", version", findings);
    expectEnd(made.info.sdkVersion, name + ", interface version", findings);
}

/// All that two descriptions of one class say must be the same.
template <class First, class Second>
void compare(const First& first, const Second& second, const std::string& names,
             CFindings& findings)
{
    findings.expect(isSameId(first.cid, second.cid), names + ", class id", toIdText(first.cid),
                    toIdText(second.cid));
    const auto expectSame = [&](const char* what, const CString& a, const CString& b) {
        findings.expect(a == b, names + what, inQuotes(a.toUtf8()), inQuotes(b.toUtf8()));
    };
    expectSame(", category", shown(first.category), shown(second.category));
    expectSame(", name", shown(first.name), shown(second.name));
    if constexpr (requires { first.vendor; }) {
        expectSame(", sub-categories", shown(first.subCategories), shown(second.subCategories));
        expectSame(", vendor", shown(first.vendor), shown(second.vendor));
        expectSame(", version", shown(first.version), shown(second.version));
        expectSame(", interface version", shown(first.sdkVersion), shown(second.sdkVersion));
        findings.expectEqual(names + ", flags", first.classFlags, second.classFlags);
    }
}

void checkClass(IPluginFactory& factory, int32 index, CFindings& findings)
{
    const std::string number = "class " + std::to_string(index);
    CGuarded<PClassInfo> first;
    findings.expectOk("getClassInfo() of " + number, factory.getClassInfo(index, &first.info));
    checkFields(first, "getClassInfo() of " + number, findings);
    const auto second = queryAs<IPluginFactory2>(&factory);
    CGuarded<PClassInfo2> longer;
    if (second) {
        findings.expectOk("getClassInfo2() of " + number,
                          second->getClassInfo2(index, &longer.info));
        checkLongFields(longer, "getClassInfo2() of " + number, findings);
        compare(first.info, longer.info, "getClassInfo() and getClassInfo2() of " + number,
                findings);
    }
    const auto third = queryAs<IPluginFactory3>(&factory);
    CGuarded<PClassInfoW> wide;
    if (second && third) {
        findings.expectOk("getClassInfoUnicode() of " + number,
                          third->getClassInfoUnicode(index, &wide.info));
        checkLongFields(wide, "getClassInfoUnicode() of " + number, findings);
        compare(longer.info, wide.info, "getClassInfo2() and getClassInfoUnicode() of " + number,
                findings);
    }
}

CError* checkClasses(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    IPluginFactory& factory = plugin.getFactory();
    const int32 count = factory.countClasses();
    if (count < 1 || count > 1024)
        TSM_FAIL("the factory has %1 classes", CString(std::to_string(count).c_str()));
    std::set<std::string> ids;
    for (int32 i = 0; i < count; ++i) {
        checkClass(factory, i, findings);
        PClassInfo info = {};
        factory.getClassInfo(i, &info);
        findings.expect(ids.insert(toIdText(info.cid)).second, "class ids",
                        "each class has its own", toIdText(info.cid) + " twice");
    }
    for (const int32 index : {-1, count, INT_MAX, INT_MIN}) {
        CGuarded<PClassInfo> info;
        findings.expectRefused("getClassInfo() of index " + std::to_string(index),
                               factory.getClassInfo(index, &info.info));
        CGuarded<PClassInfo2> longer;
        if (const auto second = queryAs<IPluginFactory2>(&factory))
            findings.expectRefused("getClassInfo2() of index " + std::to_string(index),
                                   second->getClassInfo2(index, &longer.info));
        CGuarded<PClassInfoW> wide;
        if (const auto third = queryAs<IPluginFactory3>(&factory))
            findings.expectRefused("getClassInfoUnicode() of index " + std::to_string(index),
                                   third->getClassInfoUnicode(index, &wide.info));
    }
    findings.note(std::to_string(count) + (count == 1 ? " class" : " classes"));
    return nullptr;
}

void createClass(IPluginFactory& factory, const CVstClass& each, CFindings& findings)
{
    const std::string name = "createInstance() of " + inQuotes(each.name.toUtf8());
    const CInterfaceId unknown(0x01234567, 0x89abcdef, 0x02468ace, 0x13579bdf);
    void* made = nullptr;
    if (findings.expectOk(name + " as FUnknown",
                          factory.createInstance(each.id, FUnknown::iid, &made)) &&
        findings.expect(made, name, "an object", "null")) {
        auto* const object = static_cast<FUnknown*>(made);
        findings.expectEqual(name + ", references", 1, countReferences(*object));
        object->release();
    }
    made = &factory;
    findings.expectRefused(name + " as an unknown interface",
                           factory.createInstance(each.id, unknown, &made));
    findings.expect(!made, name + " as an unknown interface", "a null pointer", "another one");
}

CError* checkCreation(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    IPluginFactory& factory = plugin.getFactory();
    for (const CVstClass& each : plugin.getBundle().getClasses())
        createClass(factory, each, findings);
    const CInterfaceId unknown(0x01234567, 0x89abcdef, 0x02468ace, 0x13579bdf);
    void* made = &factory;
    findings.expectRefused("createInstance() of an unknown class",
                           factory.createInstance(unknown, FUnknown::iid, &made));
    findings.expect(!made, "createInstance() of an unknown class", "a null pointer", "another one");
    return nullptr;
}

/// What hosts sort plug-ins by.
CError* checkCategories(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    const CVstClass& effect = plugin.getEffect();
    findings.expect(!effect.subCategories.empty(), "sub-categories", "at least one, as in \"Fx\"",
                    "none");
    findings.expect(!effect.version.isEmpty(), "version", "a text with digits", "an empty text");
    const std::string interfaceVersion = effect.sdkVersion.toUtf8();
    findings.expect(interfaceVersion.starts_with("VST 3."), "interface version",
                    "a text that begins with \"VST 3.\"", inQuotes(interfaceVersion));
    const auto third = queryAs<IPluginFactory3>(&plugin.getFactory());
    if (third) {
        const tresult dropped = third->setHostContext(nullptr);
        findings.expect(dropped == kResultOk || dropped == kNotImplemented, "setHostContext(null)",
                        "kResultOk or kNotImplemented", resultText(dropped));
    }
    return nullptr;
}

/// The format allows comments and trailing commas, of which the parser knows the first only.
std::string dropTrailingCommas(const std::string& text)
{
    std::string plain;
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        isQuoted = isQuoted != (text[i] == '"' && (i == 0 || text[i - 1] != '\\'));
        const std::size_t next = text.find_first_not_of(" \t\r\n", i + 1);
        const bool isLast = next != std::string::npos && (text[next] == '}' || text[next] == ']');
        if (isQuoted || text[i] != ',' || !isLast)
            plain += text[i];
    }
    return plain;
}

/// What hosts that list plug-ins without loading them read.
CError* checkDescription(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    const std::filesystem::path path = plugin.getPath() + "/Contents/Resources/moduleinfo.json";
    std::ifstream in(path);
    if (!in) {
        findings.skip("no moduleinfo.json");
        return nullptr;
    }
    using CJson = nlohmann::json;
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    const CJson written = CJson::parse(dropTrailingCommas(text), nullptr, false, true);
    const CJson told = CJson::parse(makeModuleInfo(plugin.getBundle()), nullptr, false, true);
    if (!findings.expect(written.is_object(), "moduleinfo.json", "an object", "none"))
        return nullptr;
    // The module's own name and version are nowhere else.
    for (const char* const key : {"Factory Info", "Classes"}) {
        const CJson& expected = told[key];
        CJson came = written.value(key, CJson());
        for (CJson& each : came)
            if (each.is_object())
                each.erase("Snapshots"); // pictures, of which the factory knows nothing
        findings.expect(came == expected, "moduleinfo.json, " + inQuotes(key),
                        "what the factory tells: " + expected.dump(), came.dump());
    }
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"factory.identity", "queryInterface and references of the factory", checkIdentity},
    {"factory.info", "the factory's description of itself", checkInfo},
    {"factory.classes", "the three descriptions of each class agree; indices out of range",
     checkClasses},
    {"factory.categories", "what hosts sort a plug-in by", checkCategories},
    {"factory.description", "moduleinfo.json says what the factory says", checkDescription},
    {"factory.creation", "instances of known and unknown classes and interfaces", checkCreation},
};

} // namespace

std::span<const CConformCase> factoryCases()
{
    return kCases;
}

} // namespace tsm
