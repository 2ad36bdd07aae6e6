#include "Tools/analyze/CReportFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace tsm {

namespace {

class AReport : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string name = (std::filesystem::temp_directory_path() / "report-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    bool readWith(const std::string& text)
    {
        std::ofstream(folder / "my take.json") << text;
        return CReportFile::readBeside(folder / "my take.wav", report, error);
    }

    std::filesystem::path folder;
    CReportFile report;
    std::string error;
};

} // namespace

TEST_F(AReport, GivesItsFigures)
{
    ASSERT_TRUE(readWith(R"({"rate": 44100, "latency": 12, "timesRealTime": 1.5e2,
                             "parameters": {"latency": "7"}})"));
    EXPECT_EQ(report.latency, 12.0);
    EXPECT_EQ(report.timesRealTime, 150.0);
}

TEST_F(AReport, MayBeMissingOrLackMembers)
{
    ASSERT_TRUE(CReportFile::readBeside(folder / "none.wav", report, error));
    EXPECT_FALSE(report.latency);
    ASSERT_TRUE(readWith(R"({"latency": "12", "elapsed": 1})"));
    EXPECT_FALSE(report.latency);
    EXPECT_FALSE(report.timesRealTime);
}

TEST_F(AReport, IsRefusedWhenItIsNoObject)
{
    for (const char* text : {"", "[1, 2]", "{\"latency\": ", "error: no such parameter"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(readWith(text));
        EXPECT_NE(error.find("my take.json"), std::string::npos);
    }
}

} // namespace tsm
