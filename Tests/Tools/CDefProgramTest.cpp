#include "Tests/Support/CScratchFolder.h"

#include <cstdlib>

#include <gmock/gmock.h>
#include <sys/wait.h>

namespace tsm {
namespace {

using testing::HasSubstr;

class TheProgram : public testing::Test {
protected:
    /// Runs it with the arguments; what it wrote goes to `out` and `err`.
    int run(const std::string& program, const std::string& arguments)
    {
        const std::string command = program + " " + arguments + " >" + (folder / "out").string() +
                                    " 2>" + (folder / "err").string();
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string path(const std::string& name)
    {
        std::string quoted("'");
        quoted += (folder / name).string();
        quoted += "'";
        return quoted;
    }

    CScratchFolder folder;
};

TEST_F(TheProgram, CompilesAndPrintsBack)
{
    folder.write("inc/part.xml", "<document><a k='1'/></document>");
    folder.write("in.xml", "<document><include file='part.xml'/></document>");
    ASSERT_EQ(run(TSM_DEFC, "-I " + path("inc") + " --depfile " + path("deps") + " " +
                                path("in.xml") + " " + path("out.bin")),
              0)
        << folder.read("err");
    EXPECT_THAT(folder.read("deps"), HasSubstr((folder / "inc/part.xml").string()));
    ASSERT_EQ(run(TSM_DEFC, "--print " + path("out.bin")), 0);
    EXPECT_THAT(folder.read("out"), HasSubstr("<a k=\"1\"/>"));
}

TEST_F(TheProgram, LeavesNoOutputBehindAnError)
{
    folder.write("in.xml", "<document>\n<template/></document>");
    folder.write("out.bin", "what an earlier run made");
    EXPECT_EQ(run(TSM_DEFC, path("in.xml") + " " + path("out.bin")), 1);
    EXPECT_THAT(folder.read("err"), HasSubstr("in.xml:2: 'template' needs the attribute 'name'"));
    EXPECT_FALSE(std::filesystem::exists(folder / "out.bin"));
    EXPECT_FALSE(std::filesystem::exists(folder / "out.bin.part"));
}

TEST_F(TheProgram, FailsOnUnreadableAndUnwritableFiles)
{
    folder.write("in.xml", "<document/>");
    EXPECT_EQ(run(TSM_DEFC, path("none.xml") + " " + path("out.bin")), 1);
    EXPECT_THAT(folder.read("err"), HasSubstr("none.xml:1: cannot open"));
    EXPECT_EQ(run(TSM_DEFC, path("in.xml") + " " + path("no/out.bin")), 1);
    EXPECT_THAT(folder.read("err"), HasSubstr("cannot write"));
    EXPECT_EQ(run(TSM_DEFC, "--print " + path("in.xml")), 1);
    EXPECT_EQ(run(TSM_DEFC, path("in.xml")), 1);
}

TEST_F(TheProgram, EmbedderNamesTheLineOfAMistake)
{
    folder.write("list.txt", "# what to embed\nname = missing.bin\n");
    EXPECT_EQ(run(TSM_RESC, path("list.txt") + " " + path("res")), 1);
    EXPECT_THAT(folder.read("err"), HasSubstr("list.txt:2: no file"));
    EXPECT_FALSE(std::filesystem::exists(folder / "res.cpp"));
}

} // namespace
} // namespace tsm
