#include "Tests/Tools/CCompileFixture.h"
#include "Tools/defc/CDefWriter.h"

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ACompiler : public CCompileFixture {};

std::string bytes(std::initializer_list<int> values)
{
    std::string text;
    for (const int value : values)
        text += static_cast<char>(value);
    return text;
}

TEST_F(ACompiler, WritesAnObjectWithAnAttribute)
{
    // clang-format off
    const std::string expected = bytes({
        5, 0, 0, 0,  29, 0, 0, 0,                                              // counts
        20, 0, 0, 0,  21, 0, 0, 0,  23, 0, 0, 0,  25, 0, 0, 0,  27, 0, 0, 0,   // offsets
        0, 'a', 0, 'n', 0, 'k', 0, 'v', 0,                                     // pool
        0, 0,  0, 0,  0,  0, 0,  1, 0,                                         // root
        1, 0,  2, 0,  0,  1, 0,  3, 0, 4, 0,  0, 0,                            // the object
    });
    // clang-format on
    EXPECT_EQ(compile("<document><a name='n' k='v'/></document>"), expected);
}

TEST_F(ACompiler, WritesATemplateWithItsLength)
{
    // clang-format off
    const std::string nodes = bytes({
        0, 0,  0, 0,  0,  0, 0,  1, 0,                // root
        1, 0,  2, 0,  1,  3, 0,  22, 0, 0, 0,         // "template", "t", kind, class, length
        3, 0,  0, 0,  0,  1, 0,  4, 0, 5, 0,  1, 0,   // body: the class, no name, k = false
        6, 0,  0, 0,  0,  0, 0,  0, 0,                // b
    });
    // clang-format on
    const std::string compiled =
        compile("<document><template name='t' class='c' k='false'><b/></template></document>");
    ASSERT_GT(compiled.size(), nodes.size());
    EXPECT_EQ(compiled.substr(compiled.size() - nodes.size()), nodes);
}

TEST_F(ACompiler, WritesAnEmptyDocument)
{
    EXPECT_EQ(compile("<document/>"),
              bytes({1, 0, 0, 0, 5, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(ACompiler, TurnsTextIntoContentWithPlainBlanks)
{
    const CPlainNode root =
        treeOf("<document><a>\n  b = c;\n\t d = &lt;e&gt; <!-- aside --> f\n<g/>h</a></document>");
    const std::vector<CPlainNode>& parts = root.children.at(0).children;
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_EQ(parts[0].tag, "content");
    EXPECT_EQ(parts[0].name, "content");
    EXPECT_EQ(parts[0].attr("value"), "b = c; d = <e> f");
    EXPECT_EQ(parts[1].tag, "g");
    EXPECT_EQ(parts[2].attr("value"), "h");
}

TEST_F(ACompiler, KeepsReservedKeysForObjectsThatWantThem)
{
    const CPlainNode root = treeOf("<document><a name='n' attr:name='other'/></document>");
    EXPECT_EQ(root.at("n").attr("name"), "other");
}

TEST_F(ACompiler, NamesTheLineOfEachMistake)
{
    compile("<document>\n"
            "  <a k='1' k='2'/>\n"
            "  <a>\n"
            "    <template name='t'/>\n"
            "    <template class='c'/>\n"
            "    <b name='x.y'/>\n"
            "  </a>\n"
            "  loose text\n"
            "  <use/>\n"
            "  <a k='&#1;'/>\n"
            "  <a k:l='1'/>\n"
            "</document>\n");
    EXPECT_THAT(problems, ElementsAre("doc.xml:2: attribute 'k' stands twice",
                                      "doc.xml:4: 'template' needs the attribute 'class'",
                                      "doc.xml:5: 'template' needs the attribute 'name'",
                                      "doc.xml:6: name 'x.y' has characters that no path can hold",
                                      "doc.xml:7: text outside of any object",
                                      "doc.xml:9: 'use' needs the attribute 'fragment'",
                                      "doc.xml:9: unknown fragment ''",
                                      "doc.xml:10: character that no text may hold",
                                      "doc.xml:11: bad attribute name 'k:l'"));
}

TEST_F(ACompiler, RefusesWhatIsNoXmlDocumentOfItsKind)
{
    struct CRow {
        std::string text;
        std::string problem;
    };
    for (const CRow& row :
         {CRow{"<document>\n<a>\n</document>", "doc.xml:3: Start-end tags mismatch"},
          CRow{"<other/>", "doc.xml:1: the root element must be 'document'"},
          CRow{"\n<document k='1'/>", "doc.xml:2: the root element takes no attributes"},
          CRow{"<document/><document/>", "doc.xml:1: only one root element may stand in a file"},
          CRow{"", "doc.xml:1: No document element found"},
          CRow{"<document>\n\n<a k='\xff'/></document>", "doc.xml:3: character that is no UTF-8"},
          CRow{"<document>\n\xed\xa0\x80</document>", "doc.xml:2: character that is no UTF-8"},
          CRow{"<document>\n\xf0\x9f\x98\x80</document>", "doc.xml:2: character that is no UTF-8"},
          CRow{std::string("<document>\0</document>", 22), "doc.xml:1: character that is no UTF-8"},
          CRow{"<document><content:/></document>", "doc.xml:1: 'content:' is no tag"}}) {
        SCOPED_TRACE(row.text);
        compile(row.text);
        EXPECT_THAT(problems, ElementsAre(HasSubstr(row.problem)));
    }
}

TEST_F(ACompiler, RefusesNestingBeyondTheLimit)
{
    const auto nested = [](int depth) {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text = "<a>" + text + "</a>";
        return "<document>" + text + "</document>";
    };
    compile(nested(kMaxDefDepth));
    EXPECT_THAT(problems, IsEmpty());
    compile(nested(kMaxDefDepth + 1));
    EXPECT_THAT(problems, ElementsAre("doc.xml:1: objects are nested too deeply"));
}

/// A tree with that many different names, spread over two nodes since one can't have them all.
CDefNode treeWithNames(int count)
{
    CDefNode root;
    root.children.resize(2);
    for (int i = 0; i < count; ++i) {
        CDefNode child;
        child.name = std::to_string(i);
        child.name.insert(child.name.begin(), 'n');
        root.children[static_cast<std::size_t>(i % 2)].children.push_back(child);
    }
    return root;
}

TEST(AWriter, NumbersUpTo65536Strings)
{
    CDefProblems problems;
    const std::string full = CDefWriter(problems).write(treeWithNames(65535)); // and the empty one
    EXPECT_TRUE(problems.isEmpty());
    EXPECT_EQ(CPlainNode::decode(full).children[0].children.back().name, "n65534");

    CDefNode tooMany = treeWithNames(65536);
    tooMany.children[1].children.back().place = {"x.xml", 7};
    static_cast<void>(CDefWriter(problems).write(tooMany));
    EXPECT_THAT(problems.getLines(),
                ElementsAre("x.xml:7: more than 65536 different strings in the document"));
}

TEST(AWriter, CountsUpTo65535OfAKind)
{
    CDefNode root;
    root.place = {"x.xml", 3};
    root.children.resize(65535);
    root.attributes.resize(65535);
    CDefProblems problems;
    static_cast<void>(CDefWriter(problems).write(root));
    EXPECT_TRUE(problems.isEmpty());

    root.children.resize(65536);
    root.attributes.resize(65536);
    static_cast<void>(CDefWriter(problems).write(root));
    EXPECT_THAT(problems.getLines(),
                ElementsAre("x.xml:3: 65536 attributes, at most 65535 are possible",
                            "x.xml:3: 65536 children, at most 65535 are possible"));
}

} // namespace
} // namespace tsm
