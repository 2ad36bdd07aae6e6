#include "Core/CMemoryReader.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"
#include "Tools/monitor/CMessageText.h"
#include "Tools/monitor/CMeterReading.h"
#include "Tools/monitor/CMeterReport.h"
#include "Tools/monitor/CMonitorScreen.h"
#include "Tools/monitor/CMonitorScript.h"

#include "Other/CInterfaceFields.h"

#include <limits>

namespace tsm {
namespace {

/// One source with a reading, a record of another kind, and a reading.
CBytes meterData()
{
    return written([](COutputStream& out) {
        EXPECT_OK(writeFields(out, 1.5, 3u, CString("plugin.modMain.modMeterOut")));
        EXPECT_OK(writeFields(out, 0u, 40u, 0u, 2u, 0u, 1.25, -1, 0.5, 0.75));
        EXPECT_OK(writeFields(out, 7u, 4u, 99u));
        EXPECT_OK(writeFields(out, 0u, 40u, 1u, 2u, 0u, 1.25, -1, 0.1, 0.2));
        EXPECT_OK(writeFields(out, 0u));
    });
}

std::vector<CMeterReading> readingsOf(const CBytes& bytes, CPtr<CError>& error)
{
    std::vector<CMeterReading> readings;
    CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
    error.reset(
        readMeterData(reader, [&](const CMeterReading& reading) { readings.push_back(reading); }));
    return readings;
}

std::string textOf(const CBytes& bytes)
{
    return messageText(bytes.data(), static_cast<int>(bytes.size()));
}

} // namespace

TEST(MeterData, AreReadPastRecordsOfOtherKinds)
{
    CPtr<CError> error;
    const auto readings = readingsOf(meterData(), error);
    EXPECT_FALSE(error);
    ASSERT_EQ(readings.size(), 2u);
    EXPECT_EQ(readings[0].meter, "modMeterOut");
    EXPECT_EQ(readings[0].time, 1.25);
    EXPECT_EQ(readings[0].rms, 0.5);
    EXPECT_EQ(readings[0].peak, 0.75);
    EXPECT_EQ(readings[1].channel, 1u);
    EXPECT_EQ(readings[1].peak, 0.2);
}

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
