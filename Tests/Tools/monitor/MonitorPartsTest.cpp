#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"
#include "Tools/monitor/CMessageText.h"
#include "Tools/monitor/CMeterReport.h"
#include "Tools/monitor/CMonitorScreen.h"
#include "Tools/monitor/CMonitorScript.h"

#include "Other/CInterfaceFields.h"

#include <limits>

namespace tsm {
namespace {

std::string textOf(const CBytes& bytes)
{
    return messageText(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

TEST(AMessageText, NamesTheFieldsAndTheRest)
{
    EXPECT_EQ(textOf(written([](COutputStream& out) {
                  EXPECT_OK(writeFields(out, "create-undo-data", 65537u, CString("Gain"), 1u, -1));
              })),
              "create-undo-data 65537 \"Gain\" 1 -1");
    EXPECT_EQ(textOf(written([](COutputStream& out) {
                  EXPECT_OK(
                      writeFields(out, "update-undo-history", 1, 2u, CString("a"), CString("b")));
              })),
              "update-undo-history 1 [\"a\", \"b\"]");
    EXPECT_EQ(textOf(written(
                  [](COutputStream& out) { EXPECT_OK(writeFields(out, "unknown", 1u, 2.0)); })),
              "unknown +12 bytes");
    EXPECT_EQ(
        textOf(written([](COutputStream& out) { EXPECT_OK(writeFields(out, "listen-viz", 1u)); })),
        "listen-viz 1 (damaged)");
    EXPECT_EQ(textOf(CBytes(3)), " (damaged)");
}

TEST(AMonitorScript, TakesLinesByTheirTimes)
{
    CMonitorScript script;
    EXPECT_OK(script.add("# none\n\n 2 preset Drum  Saturator \r\n0.5 gesture gain 1 2 3\n2 ab"));
    script.sort();
    EXPECT_EQ(script.takeDue(0.4), nullptr);
    const CMonitorStep* step = script.takeDue(2.0);
    ASSERT_NE(step, nullptr);
    EXPECT_EQ(step->name, CString("gain"));
    EXPECT_EQ(step->texts.size(), 3u);
    EXPECT_EQ(script.takeDue(2.0)->name, CString("Drum Saturator"));
    EXPECT_EQ(script.takeDue(2.0)->action, CMonitorStep::EAction::Exchange);
    EXPECT_EQ(script.takeDue(9.0), nullptr);
    for (const char* line : {"undo", "-1 undo", "nan undo", "1 unknown", "1 set gain",
                             "1 set gain 1 2", "1 undo 3", "1 reset", "1"}) {
        SCOPED_TRACE(line);
        EXPECT_THAT(takeMessage(script.add(line)), testing::HasSubstr(line));
    }
}

TEST(AMeterTable, HoldsNumbersThatReadBackAsTheyWere)
{
    CMeterReport report;
    report.add({"modMeterOut", 0.1, 1, 0, 1.0 / 3.0, std::numeric_limits<double>::denorm_min()});
    const std::string csv = report.csv();
    EXPECT_THAT(csv, testing::StartsWith("time,meter,channel,rms,peak\n"));
    double time = 0.0;
    double rms = 0.0;
    double peak = 0.0;
    const std::string row = csv.substr(csv.find('\n') + 1);
    ASSERT_EQ(std::sscanf(row.c_str(), "%lf,modMeterOut,1,%lf,%lf", &time, &rms, &peak), 3);
    EXPECT_EQ(time, 0.1);
    EXPECT_EQ(rms, 1.0 / 3.0);
    EXPECT_EQ(peak, std::numeric_limits<double>::denorm_min());
}

TEST(AMeterBar, ShowsTheLevelAndTheHeldPeakInsideItsEnds)
{
    EXPECT_EQ(CMonitorScreen::bar(0.1, 1.0, -60.0, 0.0, 6), "[#### |]  -20.0 dB, peak    0.0 dB");
    EXPECT_EQ(CMonitorScreen::bar(0.0, 0.0, -60.0, 0.0, 4), "[    ] -180.0 dB, peak -180.0 dB");
    EXPECT_EQ(CMonitorScreen::bar(9.0, 9.0, -60.0, 0.0, 4), "[###|]   19.1 dB, peak   19.1 dB");
}

} // namespace tsm
