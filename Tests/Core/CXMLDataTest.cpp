#include "Core/CXMLData.h"

#include "Core/CXMLNodeLoader.h"
#include "Tests/Support/CChunkBytes.h"
#include "Tests/Support/CDocumentBytes.h"
#include "Tests/Support/CTestTree.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace tsm {
namespace {

/// Counts the stages it has gone through, and fails on demand.
class CStaged : public CObject {
public:
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }
    CError* init() override
    {
        TSM_TRY(CObject::init());
        stages += "i";
        if (getAttrBool("fails"))
            TSM_FAIL("@tsmstr_CStaged_init Told to fail.");
        return nullptr;
    }
    CError* initAttrs() override
    {
        TSM_TRY(CObject::initAttrs());
        stages += "a" + std::to_string(getChildren().getCount());
        return nullptr;
    }
    CError* initChilds() override
    {
        TSM_TRY(CObject::initChilds());
        stages += "c" + std::to_string(getChildren().getCount());
        return nullptr;
    }
    std::string stages;
};

const CTestNode kDocument{"",
                          "",
                          {},
                          {{"core:object",
                            "options",
                            {{"title", "Se\u00f1or"}, {"sign", "\u2192"}, {"off", "false"}},
                            {}},
                           {"",
                            "panel",
                            {{"tone", "warm"}, {"is-open", "true"}},
                            {{"test:staged",
                              "part",
                              {{"size", "12"}},
                              {{"content", "content", {{"value", "text"}}, {}}}}},
                            "test:staged"},
                           {"test:staged", "alone", {}, {{"core:object", "kid", {}, {}}}}}};

class ADocument : public ATree {
protected:
    void load(const CTestNode& document)
    {
        resource = std::make_unique<CTestResource>("test.xml", CDocumentBytes::of(document));
        start({creatorRow<CStaged>("test:staged")}, "test.xml");
    }
    CObject& shared(const char* path) { return *application->getSharedRoot()->findObject(path); }
    void TearDown() override
    {
        ATree::TearDown();
        resource.reset();
    }
    std::unique_ptr<CTestResource> resource;
};

TEST_F(ADocument, BuildsItsObjectsThroughTheirStages)
{
    load(kDocument);
    EXPECT_EQ(dynamic_cast<CStaged&>(shared("alone")).stages, "ia0c1");
    EXPECT_EQ(shared("alone").getInitState(), CObject::EInitState::Complete);
    EXPECT_EQ(shared("options").getAttr("off"), nullptr); // a default makes no attribute
}

TEST_F(ADocument, DecodesItsTexts)
{
    load(kDocument);
    const CString& title = shared("options").getAttrString("title");
    EXPECT_FALSE(title.getIsWide());
    EXPECT_EQ(title.getLength(), 5);
    EXPECT_EQ(title[2], 0xF1);
    const CString& sign = shared("options").getAttrString("sign");
    EXPECT_TRUE(sign.getIsWide());
    EXPECT_EQ(sign[0], 0x2192);
}

TEST_F(ADocument, MakesInstancesOfItsTemplates)
{
    load(kDocument);
    EXPECT_EQ(shared("panel").getInitState(), CObject::EInitState::Complete);
    EXPECT_TRUE(shared("panel").getChildren().isEmpty()); // the body waits for an instance

    CAttrMap attrs;
    attrs.setText("tone", "cold");
    attrs.setText("extra", "1");
    CAttrMap overrides;
    overrides.setText("is-open", "false");
    CStaged* panel = nullptr;
    ASSERT_OK(root->createChild(panel, "panel", "p", true, &overrides, &attrs));
    EXPECT_EQ(panel->stages, "ia1c1");
    EXPECT_EQ(panel->getAttrString("tone"), "warm"); // the template wins over attrs
    EXPECT_EQ(panel->getAttrInt("extra"), 1);
    EXPECT_FALSE(panel->getAttrBool("is-open")); // overrides win over the template
    EXPECT_EQ(panel->getTag(), "panel");
    CObject* part = root->findObject("p.part");
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(part->getAttrInt("size"), 12);
    EXPECT_EQ(root->findObject("p.part.content")->getAttrString("value"), "text");
}

TEST_F(ADocument, OverridesWithDefaultsOnly)
{
    // "" and "false" write over what stands, and create nothing.
    resource = std::make_unique<CTestResource>(
        "test.xml",
        CDocumentBytes::of(
            {"",
             "",
             {},
             {{"", "t", {{"a", "false"}, {"b", ""}, {"c", "false"}}, {}, "test:staged"}}}));
    start({creatorRow<CStaged>("test:staged")}, "test.xml");
    CAttrMap attrs;
    attrs.setText("a", "true");
    attrs.setText("b", "x");
    CStaged* object = nullptr;
    ASSERT_OK(root->createChild(object, "t", "o", true, nullptr, &attrs));
    EXPECT_FALSE(object->getAttrBool("a"));
    EXPECT_EQ(object->getAttr("b")->getType(), EAttrType::None);
    EXPECT_EQ(object->getAttr("c"), nullptr);
}

TEST_F(ADocument, KeepsWhatStoodBeforeAFailedChild)
{
    resource = std::make_unique<CTestResource>(
        "test.xml", CDocumentBytes::of({"",
                                        "",
                                        {},
                                        {{"core:object", "a", {}, {}},
                                         {"test:staged", "b", {{"fails", "true"}}, {}},
                                         {"core:object", "c", {}, {}}}}));
    application = std::make_unique<CApplication>();
    const CCreatorRow row = creatorRow<CStaged>("test:staged");
    const auto lines = takeLines(application->start(&row, 1, nullptr, "test.xml"));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "Told to fail.");
    CObject* sharedRoot = application->getSharedRoot();
    EXPECT_NE(sharedRoot->findObject("a"), nullptr);
    EXPECT_EQ(sharedRoot->findObject("b"), nullptr);
    EXPECT_EQ(sharedRoot->findObject("c"), nullptr);
}

TEST_F(ADocument, IsReadFromAFileWhenNoResourceHasItsName)
{
    const auto bytes = CDocumentBytes::of(kDocument);
    const auto path = std::filesystem::temp_directory_path() /
                      ("tsm-document-" + std::to_string(::getpid()) + ".xml");
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    start({creatorRow<CStaged>("test:staged")});
    CObject& top = make(*root, "core:object", "top");
    EXPECT_OK(top.loadXMLData(CString::fromUtf8(path.string()), false));
    std::filesystem::remove(path);
    // The file has gone: the template must live on the document's own copy.
    CStaged* panel = nullptr;
    EXPECT_OK(top.createChild(panel, "panel", "p", true));
    EXPECT_THAT(takeMessage(top.loadXMLData("no/such/file.xml", false)),
                testing::StartsWith("Unable to open file 'no/such/file.xml' for reading (error "));
}

TEST_F(ADocument, RefusesNodesThatNestTooDeep)
{
    CTestNode deep{"core:object", "n", {}, {}};
    for (int i = 0; i < 3 * CXMLNodeLoader::kMaxDepth; ++i)
        deep = {"core:object", "n", {}, {deep}};
    resource =
        std::make_unique<CTestResource>("test.xml", CDocumentBytes::of({"", "", {}, {deep}}));
    application = std::make_unique<CApplication>();
    EXPECT_FAILS_WITH(application->start(nullptr, 0, nullptr, "test.xml"),
                      "The document nests deeper than 64 levels.");
}

/// Loads damaged bytes and makes an instance of the template; no matter what, neither may crash.
void loadDamaged(const std::vector<std::uint8_t>& bytes, bool mustFail)
{
    const CTestResource resource("damaged.xml", bytes);
    CApplication application;
    const CCreatorRow row = creatorRow<CStaged>("test:staged");
    CError* error = application.start(&row, 1, nullptr, "damaged.xml");
    EXPECT_TRUE(error || !mustFail);
    handleError(error);
    CTreePtr<CObject> root;
    handleError(application.initRootObject(root, CString()));
    CObject* object = nullptr;
    handleError(root->createChild(object, "panel", "p", true));
}

TEST_F(ADocument, RefusesATemplateOfATemplate)
{
    // Strings "", "panel" and "core:object"; the root holds the template, whose body is one too.
    const CBytes bytes = CChunkBytes()
                             .u32(3)
                             .u32(31)
                             .u32(12)
                             .u32(13)
                             .u32(19)
                             .raw({0})
                             .text("panel")
                             .raw({0})
                             .text("core:object")
                             .raw({0})
                             .raw({0, 0, 0, 0, 0, 0, 0, 1, 0})
                             .raw({0, 0, 1, 0, 1, 2, 0})
                             .u32(11)
                             .raw({2, 0, 0, 0, 1, 2, 0, 0, 0, 0, 0})
                             .bytes;
    resource = std::make_unique<CTestResource>("test.xml", bytes);
    start({}, "test.xml");
    CObject* made = nullptr;
    EXPECT_FAILS_WITH(root->createChild(made, "panel", "p", true),
                      "The body of a template is a template.");
}

TEST_F(ADocument, RefusesStringsThatAllLieInOne)
{
    constexpr std::uint32_t kCount = 1000;
    CChunkBytes bytes;
    bytes.u32(kCount).u32(4 * kCount + 1 + 10000 + 1).u32(4 * kCount);
    for (std::uint32_t i = 1; i < kCount; ++i)
        bytes.u32(4 * kCount + 1);
    bytes.raw({0}).text(std::string(10000, 'a')).raw({0}).zeros(9);
    resource = std::make_unique<CTestResource>("test.xml", bytes.bytes);
    application = std::make_unique<CApplication>();
    EXPECT_FAILS_WITH(application->start(nullptr, 0, nullptr, "test.xml"),
                      "The document's strings share too many bytes.");
}

TEST(DamagedDocument, FailsWhereverItIsCut)
{
    const auto bytes = CDocumentBytes::of(kDocument);
    for (std::size_t size = 0; size < bytes.size(); ++size)
        loadDamaged({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)}, true);
}

TEST(DamagedDocument, IsNeverReadOutsideOfItsBytes)
{
    const auto bytes = CDocumentBytes::of(kDocument);
    for (std::size_t at = 0; at < bytes.size(); ++at)
        for (const int value : {0, 1, 0x7F, 0x80, 0xFF, bytes[at] ^ 1}) {
            auto damaged = bytes;
            damaged[at] = static_cast<std::uint8_t>(value);
            loadDamaged(damaged, false);
        }
}

} // namespace
} // namespace tsm
