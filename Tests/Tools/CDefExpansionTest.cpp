#include "Tests/Tools/CCompileFixture.h"

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class AnAuthor : public CCompileFixture {
protected:
    using CPairs = std::vector<std::pair<std::string, std::string>>;
};

TEST_F(AnAuthor, GetsDefaultsWrittenOutInTheirOrder)
{
    const CPlainNode root = treeOf("<document>"
                                   "<defaults for='base' a='1' b=''/>"
                                   "<defaults for='x:y' base='base' required='r' b='2' c='false'"
                                   " name='unnamed'/>"
                                   "<x:y c='true' r='here'/><x:y name='own' r=''/>"
                                   "</document>");
    EXPECT_EQ(root.at("unnamed").attributes,
              (CPairs{{"a", "1"}, {"b", "2"}, {"r", "here"}, {"c", "true"}}));
    EXPECT_EQ(root.at("own").attributes,
              (CPairs{{"a", "1"}, {"b", "2"}, {"r", ""}, {"c", "false"}}));
}

TEST_F(AnAuthor, GetsTheDefaultsOfATemplatesClassInItsBody)
{
    const CPlainNode root = treeOf("<document><defaults for='x:y' a='1'/>"
                                   "<template name='t' class='x:y'/></document>");
    EXPECT_EQ(root.at("t").attributes, (CPairs{{"a", "1"}}));
}

TEST_F(AnAuthor, HearsOfAttributesThatAClassDoesNotKnowOrMisses)
{
    compile("<document>\n"
            "<defaults for='x' required='r' a=''/>\n"
            "<defaults for='y' open='true' a=''/>\n"
            "<x b='1'/>\n"
            "<y b='1'/>\n"
            "<defaults for='x'/>\n"
            "<defaults for='z' base='w'/>\n"
            "<x r='1'><defaults for='v'/></x>\n"
            "</document>");
    EXPECT_THAT(
        problems,
        ElementsAre("doc.xml:4: 'x' needs the attribute 'r'", "doc.xml:4: 'x' has no attribute 'b'",
                    "doc.xml:6: defaults for 'x' are declared twice", "doc.xml:7: unknown base 'w'",
                    "doc.xml:8: 'defaults' must stand directly below 'document'"));
}

TEST_F(AnAuthor, FillsFragmentsWithArgumentsAndChildren)
{
    const CPlainNode root =
        treeOf("<document>"
               "<fragment name='inner'><b v='$(v?none)-$($)(x)'>$(v?t)</b></fragment>"
               "<fragment name='outer'>"
               "<a name='$(n)'><use fragment='inner' v='$(n)!'/><children/></a>"
               "<use fragment='inner'/>"
               "</fragment>"
               "<r><use fragment='outer' n='one'><c/></use></r></document>");
    const CPlainNode& parent = root.children.at(0);
    ASSERT_EQ(parent.children.size(), 2u);
    const CPlainNode& one = parent.at("one");
    ASSERT_EQ(one.children.size(), 2u);
    EXPECT_EQ(one.children[0].attr("v"), "one!-$(x)");
    EXPECT_EQ(one.at("").children[0].attr("value"), "one!");
    EXPECT_EQ(one.children[1].tag, "c");
    EXPECT_EQ(parent.children[1].attr("v"), "none-$(x)");
}

TEST_F(AnAuthor, ReadsChildrenOfAUseInItsOwnScope)
{
    const CPlainNode root = treeOf("<document>"
                                   "<fragment name='box'><b k='$(n)'><children/></b></fragment>"
                                   "<fragment name='page'><use fragment='box' n='inner'>"
                                   "<c k='$(n)'/></use></fragment>"
                                   "<use fragment='page' n='outer'/></document>");
    EXPECT_EQ(root.children.at(0).attr("k"), "inner");
    EXPECT_EQ(root.children.at(0).children.at(0).attr("k"), "outer");
}

TEST_F(AnAuthor, HearsOfMistakesWithFragments)
{
    compile("<document>\n"
            "<fragment name='f'>\n<a k='$(n)'/>\n</fragment>\n"
            "<fragment name='loop'><use fragment='loop'/></fragment>\n"
            "<fragment name='f'/>\n"
            "<use fragment='none'/>\n"
            "<use fragment='f'/>\n"
            "<use fragment='f' n='1' m='1'/>\n"
            "<use fragment='loop'/>\n"
            "<a k='$(n)'/>\n"
            "<a k='$(n'/>\n"
            "<children/>\n"
            "</document>");
    EXPECT_THAT(
        problems,
        ElementsAre(
            "doc.xml:6: fragment 'f' is declared twice", "doc.xml:7: unknown fragment 'none'",
            StartsWith("doc.xml:3: argument 'n' is missing (in fragment 'f', used at "),
            "doc.xml:9: fragment 'f' has no argument 'm'",
            StartsWith("doc.xml:5: fragment 'loop' uses itself (in fragment 'loop', used at "),
            "doc.xml:11: argument 'n' outside of a fragment", "doc.xml:12: '$(' without its ')'",
            "doc.xml:13: 'children' outside of a fragment"));
}

TEST_F(AnAuthor, IncludesFilesFromTheirFoldersAndTheSearchPath)
{
    folder.write("parts/first.xml", "<document><include file='second.xml'/></document>");
    folder.write("parts/second.xml", "<document><a name='near'/></document>");
    folder.write("shared/third.xml", "<document><a name='far'/></document>");
    const CPlainNode root = treeOf("<document><b name='b'><include file='parts/first.xml'/></b>"
                                   "<include file='third.xml'/></document>");
    EXPECT_EQ(root.at("b.near").tag, "a");
    EXPECT_EQ(root.at("far").tag, "a");
}

TEST_F(AnAuthor, HearsOfMissingAndCircularFiles)
{
    folder.write("ring.xml", "<document>\n<include file='./doc.xml'/></document>");
    folder.write("bad.xml", "<document>\n<a></document>");
    compile("<document>\n<include file='nowhere.xml'/>\n<include file='ring.xml'/>\n<include/>\n"
            "<include file='bad.xml'/></document>");
    EXPECT_THAT(problems, ElementsAre("doc.xml:2: included file 'nowhere.xml' not found",
                                      "ring.xml:2: file './doc.xml' includes itself",
                                      "doc.xml:4: 'include' needs the attribute 'file'",
                                      StartsWith("bad.xml:2: Start-end tags mismatch")));
}

} // namespace
} // namespace tsm
