#include "Audio/CProductData.h"
#include "Tests/Support/CTestTree.h"

namespace tsm {
namespace {

class AProject : public ATree {
protected:
    void SetUp() override
    {
        start({});
        project = &make(*root, "core:object", "project");
        for (const auto& [name, text] :
             {std::pair{"app-name", "Any"}, std::pair{"app-vendor", "Maker"},
              std::pair{"app-version", "1.6"}, std::pair{"plugin-code", "gplu"},
              std::pair{"plugin-intchannel-count", "2"}, std::pair{"plugin-group-count", "8"},
              std::pair{"plugin-tail", "0.25"}})
            set(name, text);
    }
    void set(const char* name, const char* text) { EXPECT_OK(project->setAttr(name, text, true)); }

    CObject* project = nullptr;
    CProductData data;
};

TEST_F(AProject, GivesNamesCodesAndCounts)
{
    ASSERT_OK(data.read(*project));
    EXPECT_EQ(data.pluginName, "Any");
    EXPECT_EQ(data.pluginCode, 0x67706c75U); // "gplu", the first character in the top byte
    EXPECT_EQ(data.versionMajor, 1);
    EXPECT_EQ(data.versionMinor, 6);
    EXPECT_EQ(data.versionBuild, 0);
    EXPECT_TRUE(data.hasTail);
    EXPECT_EQ(data.tailSeconds, 0.25);
}

TEST_F(AProject, RefusesWhatIsNoProduct)
{
    struct CRow {
        const char* attr;
        const char* text;
        const char* message;
    };
    for (const CRow& row :
         {CRow{"app-name", "", "Plug-in name is empty."},
          CRow{"app-vendor", "", "Vendor name is empty."},
          CRow{"plugin-intchannel-count", "17",
               "Invalid 'plugin-intchannel-count' attribute value."},
          CRow{"plugin-intchannel-count", "0",
               "Invalid 'plugin-intchannel-count' attribute value."},
          CRow{"plugin-group-count", "9", "Invalid 'plugin-group-count' attribute value."},
          CRow{"plugin-code", "abc", "Invalid plug-in code in string 'abc'."},
          CRow{"plugin-code", "abcde", "Invalid plug-in code in string 'abcde'."},
          CRow{"app-version", "1", "Invalid version specification in string '1'."},
          CRow{"app-version", "1.2.3.4", "Invalid version specification in string '1.2.3.4'."},
          CRow{"app-version", "1.-2", "Invalid version specification in string '1.-2'."},
          CRow{"app-version", "1.x", "Invalid version specification in string '1.x'."},
          CRow{"app-version", "1..2", "Invalid version specification in string '1..2'."}}) {
        SCOPED_TRACE(std::string(row.attr) + "=" + row.text);
        const CString good = project->getAttrString(row.attr);
        set(row.attr, row.text);
        EXPECT_FAILS_WITH(data.read(*project), row.message);
        EXPECT_OK(project->setAttr(row.attr, good, true));
    }
}

TEST_F(AProject, HasATailWhenTheDefinitionNamesOne)
{
    set("plugin-tail", "");
    ASSERT_OK(data.read(*project));
    EXPECT_FALSE(data.hasTail);
    set("plugin-tail", "long");
    ASSERT_OK(data.read(*project));
    EXPECT_TRUE(data.hasTail);
    EXPECT_EQ(data.tailSeconds, 0.4);
}

} // namespace
} // namespace tsm
