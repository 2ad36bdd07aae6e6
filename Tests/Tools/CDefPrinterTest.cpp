#include "Tests/Tools/CCompileFixture.h"

namespace tsm {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class APrinter : public CCompileFixture {
protected:
    std::string print(const std::string& compiled)
    {
        std::string xml;
        error.clear();
        const bool isGood = CDefCompiler::print(compiled, xml, error);
        EXPECT_EQ(isGood, error.empty());
        return xml;
    }

    /// All that the layout can hold, in few bytes.
    std::string compileSmallDocument()
    {
        return compile(
            "<document><a name='n' attr:name='m' k='1 &lt; 2 &amp; &quot; $($)(x) &#10;'>"
            "one<content name='content' value='two'/><content name='content' value=''/>"
            "three</a><template name='t:u' class='c' attr:class='q'>é<b/></template>"
            "<template name='e' class='c'/></document>");
    }

    std::string error;
};

TEST_F(APrinter, GivesTextThatCompilesToTheSameBytes)
{
    const std::string compiled = compileSmallDocument();
    ASSERT_THAT(problems, IsEmpty());
    const std::string xml = print(compiled);
    EXPECT_EQ(compile(xml), compiled) << xml;
}

TEST_F(APrinter, RefusesADocumentCutAnywhere)
{
    const std::string compiled = compileSmallDocument();
    for (std::size_t size = 0; size < compiled.size(); ++size) {
        print(compiled.substr(0, size));
        EXPECT_THAT(error, HasSubstr("offset ")) << size;
    }
    print(compiled + '\0');
    EXPECT_THAT(error, HasSubstr("data behind the root"));
}

TEST_F(APrinter, SurvivesEveryValueOfEveryByte)
{
    const std::string compiled = compileSmallDocument();
    int accepted = 0;
    for (std::size_t at = 0; at < compiled.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            std::string damaged = compiled;
            damaged[at] = static_cast<char>(value);
            const std::string xml = print(damaged);
            accepted += error.empty() ? 1 : 0;
            // What it accepts must be good XML for the compiler, whatever bytes it gives.
            if (error.empty() && value % 16 == 1) {
                EXPECT_FALSE(compile(xml).empty()) << at << " " << value << "\n" << xml;
            }
        }
    }
    EXPECT_GT(accepted, static_cast<int>(compiled.size())); // at least the undamaged ones
}

TEST_F(APrinter, StopsAtNestingThatNoDocumentHas)
{
    // An empty string table, and plain nodes that all have one child.
    std::string deep("\x01\0\0\0\x05\0\0\0\x04\0\0\0\0", 13);
    for (int i = 0; i < 100000; ++i)
        deep += std::string("\0\0\0\0\0\0\0\x01\0", 9);
    print(deep);
    EXPECT_THAT(error, HasSubstr("nested too deeply"));
}

TEST_F(APrinter, BelievesNoCountThatTheDataCannotHold)
{
    print(std::string("\xff\xff\xff\xff\xff\xff\xff\xff", 8) + std::string(64, '\0'));
    EXPECT_THAT(error, HasSubstr("string table does not fit"));
    print(std::string("\xff\xff\xff\x3f\x40\0\0\0", 8) + std::string(64, '\0'));
    EXPECT_THAT(error, HasSubstr("string table does not fit"));
    print(std::string("\x01\0\0\0\x05\0\0\0\x04\0\0\0\0\0\0\0\0\0\xff\xff\0\0", 22));
    EXPECT_THAT(error, HasSubstr("more attributes than the data can hold"));
}

} // namespace
} // namespace tsm
