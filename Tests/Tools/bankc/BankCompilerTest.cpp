#include "Audio/CPresetItem.h"
#include "Core/CResourceEntry.h"
#include "Tests/Support/CScratchFolder.h"
#include "Tests/Support/CTestTree.h"
#include "Tools/bankc/CBankPrinter.h"
#include "Tools/bankc/CBankReader.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include <sys/wait.h>

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string embedded(const char* name)
{
    for (const CResourceEntry* entry = kResourceTable; entry->data; ++entry)
        if (std::strcmp(entry->name, name) == 0) {
            std::uint32_t size = 0;
            std::memcpy(&size, entry->data, sizeof size);
            return {reinterpret_cast<const char*>(entry->data) + sizeof size, size};
        }
    return {};
}

class TheBankCompiler : public testing::Test {
protected:
    void SetUp() override
    {
        folder.write("defs.bin", embedded("SharedData.xml"));
        ASSERT_OK(params.load(folder / "defs.bin"));
    }
    /// Compiles what stands inside of a bank of the product's parameters.
    std::vector<std::string> compile(const std::string& inside, const std::string& attributes = "")
    {
        return compileDocument("<document>\n<bank name='Bank' id='gplu' path='audio.modMain'" +
                               attributes + ">" + inside + "</bank></document>");
    }
    std::vector<std::string> compileDocument(const std::string& text)
    {
        folder.write("bank.xml", text);
        CBankReader reader(params);
        content.bank.presets.clear();
        const bool isGood = reader.read(folder / "bank.xml", content);
        std::vector<std::string> problems;
        for (const std::string& line : reader.getProblems().getLines())
            problems.push_back(folder.shorten(line));
        EXPECT_EQ(isGood, problems.empty());
        return problems;
    }
    /// The problems of a value of one parameter, and its values in all groups.
    std::vector<std::string> set(const std::string& param, const std::string& value)
    {
        auto problems =
            compile("\n<preset name='P'>\n<set param='" + param + "' " + value + "/></preset>");
        values.reset({});
        CString definition;
        if (problems.empty())
            handleError(readPresetItem(*content.bank.presets[0].items.find(param.c_str()),
                                       definition, values));
        return problems;
    }
    int run(const std::string& arguments)
    {
        const std::string command = "cd '" + (folder / ".").string() + "' && " + TSM_BANKC + " " +
                                    arguments + " >out 2>err";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    CScratchFolder folder;
    CBankParams params;
    CBankContent content;
    CAudioParamStorage values;
};

TEST_F(TheBankCompiler, ReadsValuesInTheUnitsOfUsers)
{
    EXPECT_THAT(set("modReelpath.recgain", "to='-6'"), IsEmpty());
    EXPECT_NEAR(values.value(0, 0), std::pow(10.0, -6.0 / 20.0), 1e-15);
    EXPECT_THAT(set("modReelpath.hardness", "to='12,5;99.5'"), IsEmpty());
    EXPECT_EQ(values.getGroupCount(), 2);
    EXPECT_DOUBLE_EQ(values.value(0, 1), 0.05);
    EXPECT_DOUBLE_EQ(values.value(1, 0), 0.995);
    EXPECT_THAT(set("oversampling", "to='4X'"), IsEmpty());
    EXPECT_EQ(values.value(0, 0), 3.0);
    EXPECT_THAT(set("modReelpath.flutter", "real='0.1'"), IsEmpty());
    EXPECT_EQ(values.value(0, 0), 0.1);
    EXPECT_THAT(set("io-params.group-names", "to='a\\,b, ,\\\\\\;'"), IsEmpty());
    EXPECT_EQ(values.text(0, 0), "a,b");
    EXPECT_EQ(values.text(0, 1), " ");
    EXPECT_EQ(values.text(0, 2), "\\;");
}

TEST_F(TheBankCompiler, NamesTheLineOfAWrongValue)
{
    struct CRow {
        const char* param;
        const char* value;
        const char* problem;
    };
    const CRow rows[] = {
        {"modReelpath.recgain", "to='30.1'",
         "'audio.modMain.modReelpath.recgain': '30.1' is out of the range of -30.0 to 30.0"},
        {"modReelpath.recgain", "to='3dB'",
         "'audio.modMain.modReelpath.recgain': '3dB' is no value"},
        {"modReelpath.recgain", "real='nan'",
         "'audio.modMain.modReelpath.recgain': 'nan' is no value"},
        {"modReelpath.mode", "to='F26'", "'audio.modMain.modReelpath.mode': 'F26' is no value"},
        {"oversampling", "to='1X,2X'", "'audio.modMain.oversampling': more than one value"},
        {"oversampling", "to='1X;2X'", "'audio.modMain.oversampling': too many groups"},
        {"oversampling", "", "'set' needs either 'to' or 'real'"},
        {"oversampling", "to='1X' real='1'", "'set' needs either 'to' or 'real'"},
        {"modReelpath.none", "to='1'",
         "no parameter 'audio.modMain.modReelpath.none' that presets hold"},
        {"modOutGain.mute", "to='1'",
         "no parameter 'audio.modMain.modOutGain.mute' that presets hold"},
    };
    for (const CRow& row : rows)
        EXPECT_THAT(set(row.param, row.value),
                    ElementsAre(std::string("bank.xml:4: ") + row.problem));
}

TEST_F(TheBankCompiler, NamesTheLinesOfAllThatIsWrongWithABank)
{
    EXPECT_THAT(compile("\n<base>\n<set param='oversampling' to='1X'/></base>\n"
                        "<preset name='A'/>\n<preset name='A'/>\n<preset/>\n<wrong/>",
                        " preset-count='4' item-count='2'"),
                ElementsAre("bank.xml:5: 'item-count' is 2, but there are 1",
                            "bank.xml:6: there is a preset 'A' already",
                            "bank.xml:6: 'item-count' is 2, but there are 1",
                            "bank.xml:7: 'preset' needs the attribute 'name'",
                            "bank.xml:8: 'wrong' may not stand here",
                            "bank.xml:2: 'preset-count' is 4, but there are 2"));
    EXPECT_THAT(compile("<preset name='A'>\n<set param='oversampling' to='1X'/>\n"
                        "<set param='oversampling' to='2X'/></preset>"),
                ElementsAre("bank.xml:4: 'oversampling' is set already"));
    EXPECT_THAT(compile("<bare param='oversampling' min='0' max='1'/>"),
                ElementsAre("bank.xml:2: 'oversampling' is defined"));
    EXPECT_THAT(compile("", " name-param='oversampling'"), IsEmpty());
    EXPECT_THAT(compile("<preset name='A'/>", " name-param='oversampling'"),
                ElementsAre("bank.xml:2: 'oversampling' is no text parameter"));
    EXPECT_THAT(compileDocument("<document/>"),
                ElementsAre("bank.xml:1: there is no bank or list"));
    EXPECT_THAT(compileDocument("<document><list id='a' path='b' name='c'/></document>"),
                ElementsAre("bank.xml:1: 'list' has no attribute 'name'"));
}

TEST_F(TheBankCompiler, PrintsWhatCompilesToTheSameAgain)
{
    for (const char* name : {"FactoryROM.cbf", "AppDataGlobal_routing-presets-sys"}) {
        SCOPED_TRACE(name);
        folder.write("a.bin", embedded(name));
        ASSERT_EQ(run("--definitions defs.bin --print a.bin"), 0) << folder.read("err");
        folder.write("a.xml", folder.read("out"));
        ASSERT_EQ(run("--definitions defs.bin a.xml b.bin"), 0) << folder.read("err");
        EXPECT_EQ(folder.read("b.bin"), folder.read("a.bin"));
    }
    EXPECT_THAT(folder.read("a.xml"),
                HasSubstr("<set param=\"sidechain\" real=\"2,3,2,3,4,5,6,7\"/>"));
    EXPECT_THAT(folder.read("a.xml"), HasSubstr("to=\"M &amp; S,G-2,"));
}

TEST_F(TheBankCompiler, PrintsNumbersThatUsersSeeRounded)
{
    ASSERT_THAT(set("modReelpath.recgain", "real='1.2345678901234567'"), IsEmpty());
    const std::string text = CBankPrinter(params).print(content);
    EXPECT_THAT(text, HasSubstr("real=\"1.2345678901234567\""));
}

TEST_F(TheBankCompiler, LeavesNoOutputBehindAnError)
{
    folder.write("bad.xml", "<document>\n<bank/></document>");
    folder.write("out.bin", "what an earlier run made");
    EXPECT_EQ(run("--definitions defs.bin bad.xml out.bin"), 1);
    EXPECT_THAT(folder.read("err"), HasSubstr("bad.xml:2: 'bank' needs the attribute 'id'"));
    EXPECT_FALSE(std::filesystem::exists(folder / "out.bin"));
    EXPECT_EQ(run("--definitions none.bin bad.xml out.bin"), 1);
    EXPECT_EQ(run("--definitions defs.bin --print defs.bin"), 1);
    EXPECT_THAT(folder.read("err"), HasSubstr("no block of a bank, list or preset"));
}

TEST_F(TheBankCompiler, RefusesDamagedBlocks)
{
    const std::string whole = embedded("FactoryROM.cbf");
    CBankContent read;
    for (std::size_t size = 0; size < whole.size() - 4; ++size) {
        folder.write("a.bin", whole.substr(0, size));
        EXPECT_NE(takeMessage(CBankFile::read(folder / "a.bin", read)), "") << size;
    }
    for (std::size_t at = 0; at < whole.size(); at += 7) {
        std::string bytes = whole;
        bytes[at] = static_cast<char>(~bytes[at]);
        folder.write("a.bin", bytes);
        handleError(CBankFile::read(folder / "a.bin", read));
        EXPECT_NE(CBankPrinter(params).print(read), "");
    }
}

} // namespace
} // namespace tsm
