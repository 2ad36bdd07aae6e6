#include "Tests/Support/CScratchFolder.h"
#include "Tests/Tools/CPlainNode.h"
#include "Tools/defc/CDefCompiler.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include <gmock/gmock.h>

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using CTexts = std::vector<std::string>;

class SharedData : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        CDefCompiler compiler({});
        compiler.compile(std::string(TSM_DATA_FOLDER) + "/SharedData.xml", compiled);
        EXPECT_THAT(compiler.getProblems().getLines(), IsEmpty());
        root = CPlainNode::decode(compiled);
    }

    static const CPlainNode& modMain() { return root.at("audio.modMain"); }

    static CTexts namesOf(const std::vector<const CPlainNode*>& nodes)
    {
        CTexts names;
        for (const CPlainNode* node : nodes)
            names.push_back(node->name);
        return names;
    }

    static CTexts childNames(const CPlainNode& node)
    {
        CTexts names;
        for (const CPlainNode& child : node.children)
            names.push_back(child.name);
        return names;
    }

    /// The attributes of a node, joined for comparison with a row of a table.
    static std::string rowOf(const CPlainNode& node, const CTexts& keys)
    {
        std::string row;
        for (const std::string& key : keys)
            row += " | " + node.attr(key);
        return row.substr(3);
    }

    static CTexts rowsOf(const std::vector<const CPlainNode*>& nodes, const CTexts& keys)
    {
        CTexts rows;
        for (const CPlainNode* node : nodes)
            rows.push_back(rowOf(*node, keys));
        return rows;
    }

    /// A parameter as name, least, greatest, default and converter.
    static CTexts paramsOf(const CPlainNode& node)
    {
        CTexts rows;
        for (const CPlainNode* param : node.childrenOf("audio:param")) {
            const std::string converter = param->attr("converter");
            rows.push_back(param->name + " " + rangeOf(*param) + " " +
                           converter.substr(converter.rfind('.') + 1));
        }
        return rows;
    }

    static std::string rangeOf(const CPlainNode& param)
    {
        return param.attr("min-values") + " " + param.attr("max-values") + " " +
               param.attr("def-values");
    }

    static CTexts allocsOf(const CPlainNode& node)
    {
        CTexts rows;
        for (const CPlainNode* alloc : node.childrenOf("audio:param-alloc"))
            rows.push_back(alloc->attr("index") + " " + alloc->attr("param-name"));
        return rows;
    }

    static std::string remapsOf(const CPlainNode& node)
    {
        const std::vector<const CPlainNode*> remaps = node.childrenOf("audio:param-remap");
        return remaps.empty() ? "" : remaps.at(0)->at("content").attr("value");
    }

    inline static std::string compiled;
    inline static CPlainNode root;
};

TEST_F(SharedData, CompilesFromItsPrintedFormToTheSameBytes)
{
    const CScratchFolder folder;
    std::string xml;
    std::string error;
    ASSERT_TRUE(CDefCompiler::print(compiled, xml, error)) << error;
    folder.write("printed.xml", xml);
    CDefCompiler compiler({});
    std::string again;
    ASSERT_TRUE(compiler.compile(folder / "printed.xml", again));
    EXPECT_TRUE(again == compiled);
}

TEST_F(SharedData, HasItsTopLevelInOrder)
{
    EXPECT_THAT(childNames(root),
                ElementsAre("whatsnew", "whatsnew", "whatsnew", "whatsnew", "whatsnew", "whatsnew",
                            "whatsnew", "font", "is", "fs", "project", "plugin", "audio"));
    EXPECT_THAT(childNames(root.at("audio")),
                ElementsAre("paramcvt", "flt", "fltarray", "param-enable-viz",
                            "modUpsamplerInterpolator", "modDownsamplerDecimator",
                            "modUpsamplerFilterSteep", "modDownsamplerFilterSteep",
                            "modResamplerFilterSoft", "modOutput", "modMain"));
    EXPECT_EQ(root.at("audio").attr("plugin-tag"), "plugin");
}

TEST_F(SharedData, TellsItsHistoryNewestFirst)
{
    std::string later = "9";
    for (std::size_t i = 0; i < 7; ++i) {
        const CPlainNode& entry = root.children[i];
        EXPECT_LT(entry.attr("date"), later);
        later = entry.attr("date");
        ASSERT_FALSE(entry.childrenOf("p").empty());
        for (const CPlainNode* line : entry.childrenOf("p"))
            EXPECT_FALSE(line->at("content").attr("value").empty());
    }
    EXPECT_EQ(root.children[0].attr("version"), root.at("project").attr("app-version"));
}

TEST_F(SharedData, NamesFontsAndImageSetsThatTheBinaryCarries)
{
    const std::set<std::string> fonts{"base_b", "base",  "compact",  "compact-small",
                                      "micro",  "small", "micro-sm", "title"};
    EXPECT_THAT(childNames(root.at("font")),
                ElementsAre("base", "micro", "micro-sm", "small", "compact", "title"));
    for (const CPlainNode& font : root.at("font").children) {
        EXPECT_EQ(font.tag, "font");
        EXPECT_THAT(childNames(font), ElementsAre("regular", "bold", "superscript"));
        for (const CPlainNode& style : font.children) {
            EXPECT_EQ(style.attr("is-font-style"), "true");
            const std::string file = std::filesystem::path(style.attr("file")).stem();
            EXPECT_EQ(fonts.count(file), 1u) << file;
            EXPECT_EQ(style.attr("file"), "../../../Gfx/Fonts/" + file + ".fnt");
        }
    }
    const auto sets = root.at("is").childrenOf("imageset");
    EXPECT_EQ(sets.size(), 25u);
    for (const CPlainNode* set : sets) {
        const std::string file = set->name == "knob2" ? "knob3" : set->name;
        EXPECT_EQ(set->attr("name"), set->name);
        EXPECT_EQ(set->attr("file"), "../../../Gfx/Imagesets/" + file + ".is");
    }
    EXPECT_EQ(root.at("fs.impulses").tag, "fileset");
    EXPECT_EQ(root.at("fs.impulses").attr("file"), "Impulses/ReelpathImpulses.fs");
}

TEST_F(SharedData, DescribesTheProject)
{
    const std::map<std::string, std::string> values{
        {"app-name", "Ferrit Reelpath"},
        {"app-vendor", "Tessmark"},
        {"app-version", "1.6"},
        {"plugin-code", "gplu"},
        {"plugin-uuid", "00000000-0000-4000-8000-0000000000a1"},
        {"plugin-category-vst3", "Fx|Distortion"},
        {"plugin-intchannel-count", "2"},
        {"plugin-group-count", "8"},
        {"plugin-tail", "0.4"},
        {"auto-oversampling-rtmode", "1"},
        {"is-viz-always-active", "true"},
        {"is-symmetric-io", "true"},
        {"use-host-bpm", "false"},
        {"use-host-recording", "false"},
        {"use-window-resizing", "false"},
        {"use-sidechain", "false"},
        {"use-routing", "true"},
        {"use-mid-side", "false"},
        {"app-full-name", "Tessmark Ferrit Reelpath"},
        {"app-name-title", "Ferrit Reelpath"},
        {"app-name-concat", "FerritReelpath"},
        {"app-desc", "Tape saturation effect plug-in."},
        {"window-width", "900"},
        {"window-height", "179"},
        {"default-fps", "30"},
        {"use-latency-uniformer", "true"},
        {"use-latency-uniformer-always", "false"},
        {"uniform-latencies", "768000=584"},
        {"use-sidebar-decor-x1", "50"},
        {"use-sidebar-decor-x2", "75"},
        {"app-vendor-code", "Tsmk"}};
    for (const auto& [key, value] : values)
        EXPECT_EQ(root.at("project").attr(key), value) << key;

    std::istringstream further(
        "app-vendor-url app-vendor-email app-copyright app-product-url app-vendor-url-domain "
        "release-year use-new-palette use-version-check-button use-oversampling "
        "is-oversampling-linphase is-oversampling-switchable is-oversampling-storable "
        "use-metering use-metering-knobs use-bypass use-denorm use-sat use-spectrum use-hilbert "
        "use-waveform use-survey use-bottom-group-selector app-class app-url-base bin-name "
        "bundle-id plugin-category-vst plugin-autype use-window-resizing-handle "
        "app-copyright-year plugin-names-aax app-product-url-path use-routing-labels "
        "use-metering-density is-minimal-ui plugin-category-aax app-vendor-url-domain-inv "
        "app-vendor-user-twitter app-vendor-user-facebook app-vendor-support-url app-author");
    std::size_t count = values.size();
    for (std::string key; further >> key; ++count)
        EXPECT_TRUE(root.at("project").has(key)) << key;
    EXPECT_EQ(root.at("project").attributes.size(), count);
}

TEST_F(SharedData, MakesTheObjectsOfAnInstanceInOrder)
{
    const CPlainNode& plugin = root.at("plugin");
    EXPECT_EQ(plugin.tag, "template");
    EXPECT_EQ(plugin.templateClass, "core:object");
    EXPECT_THAT(childNames(plugin),
                ElementsAre("appdata", "appdata", "appdata", "appdata", "appdata", "audio-env",
                            "param-collector", "viz-collector", "cctable",
                            "interface-base-connector", "interface-base", "param-registry-io",
                            "param-registry", "param-registry-uicolor", "ext-param-list"));
    EXPECT_EQ(plugin.children[0].attr("file"),
              "../routing-presets|AppDataGlobal_routing-presets-sys");
    EXPECT_EQ(rowOf(plugin.at("interface-base"),
                    {"base-connector", "undo-count-max", "param-collector", "viz-collector"}),
              "^interface-base-connector | 32 | ^param-collector | ^viz-collector");
    EXPECT_EQ(rowOf(plugin.at("viz-collector"),
                    {"env", "param-collector", "export-slot-param", "export-color-param"}),
              "^audio-env | ^param-collector |  | ");
    EXPECT_THAT(
        rowsOf(plugin.childrenOf("audio:param-registry"),
               {"hierarchy", "id", "is-master", "file", "preset-naming", "preset-name-param",
                "is-global-param-storable", "def-name-remap", "param-undo"}),
        ElementsAre(
            "plugin.modMain.io-params | TMIO | false |  | Routing preset |  | false | "
            "plugin=audio | ^interface-base",
            "plugin.modMain | gplu | true | FactoryROM.cbf | Master preset | "
            "plugin.modMain.preset-name | false | plugin=audio | ^interface-base",
            "plugin.modMain.uicolor-params | TMUS | false |  | UI color preset | "
            "plugin.modMain.uicolor-params.mode-name | true | plugin=audio | ^interface-base"));
}

TEST_F(SharedData, PublishesTwelveParametersToTheHost)
{
    EXPECT_THAT(rowsOf(root.at("plugin.ext-param-list").childrenOf("audio:ext-param"),
                       {"ext-name", "param-name", "group", "element-index", "param-collector"}),
                ElementsAreArray([] {
                    CTexts rows;
                    for (const char* row : {"Bypass | plugin.modMain.bypass-enable",
                                            "RecGain | plugin.modMain.modReelpath.recgain",
                                            "HiEmphs | plugin.modMain.modReelpath.emphasis",
                                            "Hardnes | plugin.modMain.modReelpath.hardness",
                                            "Saturat | plugin.modMain.modReelpath.saturation",
                                            "Flutter | plugin.modMain.modReelpath.flutter",
                                            "CabEnab | plugin.modMain.modReelpath.cab-enable",
                                            "CabIndx | plugin.modMain.modReelpath.cab-index",
                                            "HiGain | plugin.modMain.modReelpath.highgain",
                                            "OutGain | plugin.modMain.modOutGain.gain",
                                            "RecMode | plugin.modMain.modReelpath.mode",
                                            "FlMode | plugin.modMain.modReelpath.fluttermode"})
                        rows.push_back(std::string(row) + " | 0 | 0 | plugin.param-collector");
                    return rows;
                }()));
}

TEST_F(SharedData, DefinesTheConverters)
{
    const CPlainNode& cvt = root.at("audio.paramcvt");
    EXPECT_THAT(childNames(cvt), ElementsAre("gain", "freq", "text", "real", "percent", "time",
                                             "time-sec", "enum", "enum-enable"));
    EXPECT_EQ(rowOf(cvt.at("gain"),
                    {"is-discrete", "scale-power", "scale-threshold", "decimals", "label"}),
              "false | 1.0 | -1.0 | 1 | dB");
    EXPECT_EQ(rowOf(cvt.at("freq"), {"is-discrete", "scale-power", "scale-threshold", "label"}),
              "false | 1.0 | -1.0 | Hz");
    EXPECT_EQ(rowOf(cvt.at("text"), {"label", "is-discrete"}), " | true");
    EXPECT_EQ(rowOf(cvt.at("real"), {"label", "is-discrete", "decimals"}), " | false | 2");
    EXPECT_EQ(rowOf(cvt.at("percent"), {"label", "is-discrete"}), "% | false");
    const CTexts time{"is-discrete", "is-log", "scale", "is-exact", "is-precise", "label"};
    EXPECT_EQ(rowOf(cvt.at("time"), time), "false | false | 0.001 | false | false | ms");
    EXPECT_EQ(rowOf(cvt.at("time-sec"), time), "false | false | 1.0 | false | false | s");
    EXPECT_EQ(rowOf(cvt.at("enum"), {"label", "is-discrete", "state-names"}), " | true | ");
    EXPECT_EQ(rowOf(cvt.at("enum-enable"), {"label", "is-discrete", "state-names"}),
              " | true | Off;On");
}

/// A parameter that exists in running instances. Flags: S storable, P persistent, G global,
/// 1g single group, 1e single element.
struct CParamRow {
    const char* path;
    const char* range; // least, greatest, default
    const char* converter;
    const char* type;
    const char* flags;
    const char* visualName;
    const char* states = "";
};

constexpr const char* kChannelNames =
    "  L,R,IN3,IN4,IN5,IN6,IN7,IN8,IN9,IN10,IN11,IN12,IN13,IN14,IN15,IN16";

const CParamRow kParams[] = {
    {"io-params.in-channel-names", kChannelNames, "text", "string", "S 1g", "In channel names"},
    {"io-params.group-names", "  1,2,3,4,5,6,7,8", "text", "string", "S 1g", "Group names"},
    {"io-params.show-all-channels", "0 1 0", "enum-enable", "", "S 1g 1e",
     "Show all channel meters"},
    {"io-params.in-routing", "0 16 1,2,0,0,0,0,0,0", "enum", "", "S 1g", "In routing"},
    {"io-params.grouping", "0 7 0,0,1,1,2,2,3,3", "enum", "", "S 1g", "Group assign"},
    {"io-params.channel-group-solo", "0 1 0", "enum-enable", "", "G", "Channel group solo"},
    {"io-params.out-routing", "0 16 1,2,0,0,0,0,0,0", "enum", "", "S 1g", "Out routing"},
    {"oversampling", "0 4 1", "enum", "", "S 1g 1e", "Oversampling", "Auto;1X;2X;4X;8X"},
    {"oversampling-bypass", "0 1 0", "enum-enable", "", "G 1g 1e", ""},
    {"modReelpath.recgain", "-30 30 0.0", "gain", "", "S", "Recording gain"},
    {"modReelpath.saturation", "50.0 100.0 100.0", "percent", "", "S", "Saturation amount"},
    {"modReelpath.flutter", "0.0 100.0 50.0", "percent", "", "S", "Flutter amount"},
    {"modReelpath.hardness", "0.0 100.0 50.0", "percent", "", "S", "Hardness amount"},
    {"modReelpath.emphasis", "-18 18 10", "real", "", "S", "High-freq emphasis"},
    {"modReelpath.highgain", "-12 12 0", "real", "", "S", "High-freq gain"},
    {"modReelpath.mode", "0 4 0", "enum", "", "S", "Feedback mode", "F0;F25;F50;F100;F150"},
    {"modReelpath.fluttermode", "0 4 0", "enum", "", "S", "Flutter mode", "CNS;PRO"},
    {"modReelpath.cab-index", "0 32 1", "enum", "", "S", "Tape index"},
    {"modReelpath.cab-filename", "  Default", "text", "string", "S", "External impulse filename"},
    {"modReelpath.cab-enable", "0 1 1", "enum-enable", "", "S", "Tape impulse enable"},
    {"modReelpath.cab-status", "  Not loaded yet", "text", "string", "G", ""},
    {"modOutGain.gain", "-12 12 0", "gain", "", "S", "Output gain"},
    {"group-solo-bypass", "0 1 0", "enum-enable", "", "G 1g 1e", ""},
    {"bypass-enable", "0 1 0", "enum-enable", "", "P 1g 1e", "Bypass"},
    {"channel-counts", "0 256 2", "enum", "", "G 1e", ""},
    {"instance-name", "  ", "text", "string", "P 1g", "Instance name"},
    {"ab-state", "0 1 0", "enum", "", "G 1g 1e", ""},
    {"preset-name", "0 1 Default", "text", "string", "S G 1g 1e", "Preset name"},
    {"host-track-name", "0 1 ", "text", "string", "G 1g 1e", ""},
    {"host-oversampling-mode", "0 3 0", "enum", "", "G 1g 1e", ""},
    {"host-offline", "0 1 0", "enum-enable", "", "G 1g 1e", ""},
    {"host-latency-change", "0 1 0", "enum-enable", "", "G 1g 1e", ""},
    {"meter-rmstime", "1 1000 2", "time", "", "G 1g 1e", "Meter integration time"},
    {"meter-releasetime", "0 5000 750", "time", "", "G 1g 1e", "Meter release time"},
    {"meter-peaktime", "100 10000 1000", "time", "", "G 1g 1e", "Meter peak time"},
    {"groupsel", "0 7 0", "enum", "", "S P 1g 1e", ""},
    {"main-window-size", "10 8192 900,179", "real", "", "G 1g", ""},
    {"lp-oversampling-enable", "0 1 0", "enum", "", "G 1g 1e", "Linear-phase oversampling enable"},
    {"uicolor-params.mode-name", "0 1 Default", "text", "string", "G 1g 1e", ""},
    {"uicolor-params.palette", "0 1 0", "real", "raw", "G 1g 1e", "Palette"},
};

std::string flagsOf(const CPlainNode& param)
{
    std::string flags;
    const auto add = [&](const char* key, const char* flag) {
        if (param.attr(key) != "true")
            return;
        flags += flags.empty() ? "" : " ";
        flags += flag;
    };
    add("is-storable", "S");
    add("is-persistent", "P");
    add("is-global", "G");
    add("is-single-group", "1g");
    add("is-single-element", "1e");
    return flags;
}

TEST_F(SharedData, DefinesTheParametersOfAnInstance)
{
    EXPECT_EQ(std::size(kParams), 40u);
    for (const CParamRow& row : kParams) {
        SCOPED_TRACE(row.path);
        const CPlainNode& param = modMain().at(row.path);
        EXPECT_EQ(param.tag, "audio:param");
        EXPECT_EQ(rangeOf(param), row.range);
        EXPECT_EQ(param.attr("converter"), std::string("shared::audio.paramcvt.") + row.converter);
        EXPECT_EQ(param.attr("data-type"), row.type);
        EXPECT_EQ(flagsOf(param), row.flags);
        EXPECT_EQ(param.attr("visual-name"), row.visualName);
        EXPECT_EQ(param.attr("state-names"), row.states);
        EXPECT_EQ(param.attr("element-size"), "1");
    }
    const CPlainNode& viz = root.at("audio.param-enable-viz");
    EXPECT_EQ(rangeOf(viz) + " " + flagsOf(viz), "0 1 0 G 1g 1e");
}

TEST_F(SharedData, HasNoFurtherParametersInAnInstance)
{
    CTexts wanted;
    for (const CParamRow& row : kParams)
        wanted.push_back(row.path);
    CTexts found;
    modMain().walk([&](const CPlainNode& node, const std::string& path) {
        if (node.tag == "audio:param" && flagsOf(node).find_first_of("SPG") != std::string::npos)
            found.push_back(path);
    });
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(wanted));
}

TEST_F(SharedData, TiesSettingsToTheStores)
{
    EXPECT_THAT(rowsOf(modMain().childrenOf("audio:param-shared-storage"),
                       {"param", "data-name", "storage-type"}),
                ElementsAre("lp-oversampling-enable | lp-oversampling-enable | local",
                            "meter-rmstime | integration-time | local",
                            "meter-releasetime | release-time | local",
                            "meter-peaktime | peak-level-hold-time | local",
                            "denorm-enable | denorm-enable | group",
                            "uicolor-params.mode-name | uicolor-name | local",
                            "uicolor-params.palette | uicolor-palette | local"));
    EXPECT_EQ(rowOf(modMain().at("paramFilterBypassOS"), {"src", "dst"}),
              "oversampling,host-oversampling-mode | oversampling-bypass");
    EXPECT_EQ(rowOf(modMain().at("paramFilterBypassGroupSolo"), {"src", "dst"}),
              "io-params.channel-group-solo | group-solo-bypass");
}

TEST_F(SharedData, BuildsTheChainInOrder)
{
    CTexts chain;
    CTexts beside;
    for (const CPlainNode& child : modMain().children)
        if (child.has("is-outoforder"))
            (child.attr("is-outoforder") == "true" ? beside : chain).push_back(child.name);
    EXPECT_THAT(chain,
                ElementsAre("modInputNode", "modPreUpsampler", "modUpsampler", "modMainPre",
                            "modReelpath", "modOutGain", "modDownsampler", "modPostDownsampler",
                            "modGroupSolo", "modBypass", "modLatencyUniformer"));
    EXPECT_THAT(beside, ElementsAre("modMeterOut", "modMeterIODiff"));
    EXPECT_EQ(modMain().attr("is-auto-links"), "true");
    EXPECT_THAT(
        rowsOf(modMain().childrenOf("audio:process-link"), {"src", "dst", "bypass-state-id"}),
        ElementsAre("modPostDownsampler | modMeterOut | 0",
                    "modPostDownsampler | modMeterIODiff | 1",
                    "modPreUpsampler | modMeterIODiff/1 | 1", "modInputNode | modBypass/1 | "));

    const std::map<std::string, std::string> bypassed{{"modUpsampler", "33"},
                                                      {"modDownsampler", "33"},
                                                      {"modGroupSolo", "35"},
                                                      {"modLatencyUniformer", "12"}};
    for (const std::string& name : chain) {
        const auto found = bypassed.find(name);
        EXPECT_EQ(modMain().at(name).attr("bypass-state-id"),
                  found == bypassed.end() ? "-1" : found->second);
    }
}

TEST_F(SharedData, StatesWhenProcessesAreLeftOut)
{
    EXPECT_THAT(
        rowsOf(modMain().childrenOf("audio:process-bypass-state"),
               {"id", "param", "value", "is-inverted"}),
        ElementsAre(
            "0 | modMeterOut-enable | 1.0 | true", "1 | modMeterIODiff-enable | 1.0 | true",
            "12 | lp-oversampling-enable | 1.0 | true", "33 | oversampling-bypass | 1.0 | false",
            "34 | oversampling-bypass | 1.0 | true", "35 | group-solo-bypass | 1.0 | false"));
    EXPECT_THAT(namesOf(modMain().childrenOf("audio:process-bypass-state")),
                ElementsAre("process-bypass-state-viz", "process-bypass-state-viz",
                            "process-bypass-state", "process-bypass-state", "process-bypass-state",
                            "process-bypass-state"));
}

TEST_F(SharedData, RunsTheTapeBetweenExplicitLinks)
{
    const CPlainNode& tape = modMain().at("modReelpath");
    EXPECT_EQ(rowOf(tape, {"is-stacked", "is-auto-links"}), "true | false");
    EXPECT_THAT(rowsOf(tape.childrenOf("audio:process-link"), {"src", "dst"}),
                ElementsAre("* | modReelpath", "modReelpath | modBankedConvolver",
                            "modBankedConvolver | modReelpathPost", "modReelpathPost | *"));
    EXPECT_THAT(allocsOf(tape.at("modReelpath")),
                ElementsAre("0 recgain", "1 saturation", "2 flutter", "3 hardness", "4 emphasis",
                            "5 highgain", "6 mode", "7 fluttermode"));
    EXPECT_THAT(allocsOf(tape.at("modReelpathPost")),
                ElementsAre("0 flutter", "1 emphasis", "2 highgain", "3 fluttermode"));
    EXPECT_EQ(rowOf(tape.at("modReelpath"), {"is-smooth-update", "xfade-length"}), "true | 0.015");
    EXPECT_EQ(rowOf(tape.at("modReelpathPost"), {"is-smooth-update", "xfade-length"}),
              "true | 0.015");
    EXPECT_THAT(
        paramsOf(tape.at("modBankedConvolver")),
        ElementsAre("index 0 256 1 enum", "filename   Default text", "enable 0 1 1 enum-enable"));
    EXPECT_EQ(remapsOf(tape),
              "modReelpath.recgain = recgain; modReelpath.saturation = saturation; "
              "modReelpath.flutter = flutter; modReelpath.hardness = hardness; "
              "modReelpath.emphasis = emphasis; modReelpath.highgain = highgain; "
              "modReelpath.mode = mode; modReelpath.fluttermode = fluttermode; "
              "modBankedConvolver.index = cab-index; modBankedConvolver.filename = cab-filename; "
              "modBankedConvolver.enable = cab-enable; modReelpathPost.flutter = flutter; "
              "modReelpathPost.emphasis = emphasis; modReelpathPost.highgain = highgain; "
              "modReelpathPost.fluttermode = fluttermode");
}

TEST_F(SharedData, SetsUpGainAndBypass)
{
    const CTexts terminal{"is-smooth-update", "is-stacked", "xfade-length"};
    EXPECT_EQ(rowOf(modMain().at("modOutGain"), terminal), "true | true | 0.015");
    EXPECT_THAT(allocsOf(modMain().at("modOutGain")),
                ElementsAre("0 gain", "1 mute", "2 phase-invert"));
    for (const char* name : {"modGroupSolo", "modBypass"}) {
        const CPlainNode& bypass = modMain().at(name);
        EXPECT_EQ(rowOf(bypass, terminal), "true | false | 0.015");
        EXPECT_THAT(rowsOf(bypass.childrenOf("audio:param-alloc"),
                           {"index", "param-name", "use-all-groups"}),
                    ElementsAre("0 | enable | false", "1 | group-solo | true"));
    }
    EXPECT_EQ(remapsOf(modMain().at("modGroupSolo")), "group-solo=^io-params.channel-group-solo");
    EXPECT_EQ(remapsOf(modMain().at("modBypass")), "enable=^bypass-enable");
    EXPECT_EQ(modMain().at("modLatencyUniformer").attr("latencies"), "768000=584");
}

TEST_F(SharedData, SetsUpTheMeters)
{
    const auto params = [](const char* rmsTime, const char* useBias) {
        const std::string rms(rmsTime);
        return CTexts{"peak-time 1 10000 1000 time",
                      "rms-time 0.1 5000 " + rms + " time",
                      "gain -96 96 0 gain",
                      "bias-time 1 10000 2000 time",
                      std::string("use-bias 0 1 ") + useBias + " enum-enable",
                      "release 0 5000 500 time",
                      "peak-gain -12 12 0 gain",
                      "rms-time2 0.1 5000 " + rms + " time",
                      "release2 0 5000 500 time",
                      "use-time2 0 1 0 enum-enable",
                      "use-ebu128 0 1 0 enum-enable"};
    };
    const CPlainNode& out = modMain().at("modMeterOut");
    const CPlainNode& diff = modMain().at("modMeterIODiff");
    EXPECT_EQ(paramsOf(out), params("100", "1"));
    EXPECT_EQ(paramsOf(diff), params("3000", "0"));
    for (const CPlainNode* meter : {&out, &diff})
        EXPECT_THAT(allocsOf(*meter),
                    ElementsAre("0 peak-time", "1 rms-time", "2 gain", "3 bias-time", "4 use-bias",
                                "5 release", "6 peak-gain", "7 rms-time2", "8 release2",
                                "9 use-time2", "10 use-ebu128"));
    const CTexts attributes{"fps", "is-diff", "is-compression", "is-inverted"};
    EXPECT_EQ(rowOf(out, attributes), " | false | false | false");
    EXPECT_EQ(rowOf(diff, attributes), "6 | true | false | false");
    EXPECT_EQ(remapsOf(out), "rms-time = /plugin.modMain.meter-rmstime; "
                             "release = /plugin.modMain.meter-releasetime; "
                             "peak-time = /plugin.modMain.meter-peaktime");
    EXPECT_EQ(remapsOf(diff), "");
}

TEST_F(SharedData, SetsUpTheOversamplingFilters)
{
    for (const char* name : {"modUpsampler", "modDownsampler"}) {
        EXPECT_EQ(remapsOf(modMain().at(name)),
                  "mode = ^oversampling; host-mode = ^host-oversampling-mode");
        EXPECT_THAT(allocsOf(modMain().at(name)), ElementsAre("0 mode", "1 host-mode"));
    }
    EXPECT_EQ(modMain().at("modUpsampler").attr("is-upsampler"), "true");
    EXPECT_EQ(modMain().at("modDownsampler").attr("is-upsampler"), "false");

    struct CRow {
        const char* name;
        const char* halfBand;
        const char* latency;
        const char* length;
        const char* freq;
        const char* beta;
    };
    for (const CRow& row : {CRow{"modUpsamplerFilterSteep", "0", "6", "15", "11025", "18"},
                            CRow{"modDownsamplerFilterSteep", "0", "7", "24", "10980", "18"},
                            CRow{"modResamplerFilterSoft", "1", "5", "1.6", "12000", "18.4"}}) {
        SCOPED_TRACE(row.name);
        const CPlainNode& filter = root.at("audio").at(row.name);
        EXPECT_EQ(rowOf(filter, {"process-list", "def-index", "def-child-name", "is-allpass-bank"}),
                  "0:.flt1;1:.flt2 | 0 | mod | false");
        EXPECT_EQ(remapsOf(filter), "index=/plugin.modMain.lp-oversampling-enable");
        EXPECT_EQ(rangeOf(filter.at("flt1.index")), std::string("0 1 ") + row.halfBand);
        EXPECT_EQ(filter.at("flt1.param-alloc").attr("is-smooth-update"), "true");
        EXPECT_THAT(paramsOf(filter.at("flt2")),
                    ElementsAre(std::string("latency 0 14 ") + row.latency + " real",
                                "fixsr 0 1 1 enum-enable",
                                std::string("length 0.1 500 ") + row.length + " time",
                                std::string("freq 20 22050 ") + row.freq + " freq",
                                std::string("beta 1 100 ") + row.beta + " real"));
        EXPECT_THAT(allocsOf(filter.at("flt2")),
                    ElementsAre("2 latency", "3 fixsr", "4 length", "5 freq", "6 beta"));
    }
}

TEST_F(SharedData, NamesNothingBeforeItIsRead)
{
    std::set<std::string> read;
    root.walk([&](const CPlainNode& node, const std::string& path) {
        for (const char* key : {"converter", "fltgen", "gen-array"}) {
            if (!node.has(key))
                continue;
            const std::string target = node.attr(key).substr(std::string("shared::").size());
            EXPECT_EQ(read.count(target), 1u) << path << " " << key << " " << target;
        }
        read.insert(path);
    });
}

TEST_F(SharedData, RefersToSiblingsThatExist)
{
    root.walk([](const CPlainNode& node, const std::string& path) {
        const CTexts names = childNames(node);
        const auto isChild = [&names](const std::string& name) {
            return std::find(names.begin(), names.end(), name) != names.end();
        };
        for (const CPlainNode* alloc : node.childrenOf("audio:param-alloc"))
            EXPECT_TRUE(isChild(alloc->attr("param-name"))) << path;
        for (const CPlainNode* link : node.childrenOf("audio:process-link"))
            for (const char* key : {"src", "dst"}) {
                const std::string end = link->attr(key);
                EXPECT_TRUE(end == "*" || isChild(end.substr(0, end.find('/')))) << path << end;
            }
        // Without a semicolon, blanks would divide the one pair into three.
        const std::string remaps = remapsOf(node);
        EXPECT_TRUE(remaps.find(';') != std::string::npos || remaps.find(' ') == std::string::npos)
            << path;
        EXPECT_TRUE(remaps.empty() || remaps.back() != ';') << path;
    });
}

} // namespace
} // namespace tsm
