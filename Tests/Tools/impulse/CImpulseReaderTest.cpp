#include "Tools/impulse/CImpulseReader.h"

#include <gtest/gtest.h>

namespace tsm {
namespace {

const std::string kMachine = R"(<machine name="m" format="float32" rate="48000" peak="-0.5"
    peak-sample="5" samples="64" gap-um="4" spacing-um="0.4" transition-um="0.8" coating-um="13"
    track-mm="2" azimuth-minutes="1" head-mm="6" lift-mm="0.9" low-cut-hz="16" high-cut-hz="32000"
    lead-limit-hz="30000" align-hz="9000" align-db="0")";

std::string document(const std::string& impulse, const std::string& machineMore = "")
{
    return "<impulses>\n" + kMachine + machineMore + ">" + impulse + "</machine></impulses>";
}

std::string errorOf(const std::string& text)
{
    std::vector<CImpulseSpec> impulses;
    std::string error;
    EXPECT_FALSE(CImpulseReader::read(text, impulses, error));
    return error;
}

TEST(AnImpulse, HasWhatItsMachineHasUnlessItTellsOtherwise)
{
    std::vector<CImpulseSpec> impulses;
    std::string error;
    ASSERT_TRUE(CImpulseReader::read(document(R"(<impulse id="3" name="a" speed-ips="15"/>
                    <impulse id="4" name="b" speed-ips="7.5" gap-um="6" format="integer24"/>)"),
                                     impulses, error))
        << error;
    ASSERT_EQ(impulses.size(), 2U);
    EXPECT_EQ(impulses[0].id, 3U);
    EXPECT_EQ(impulses[0].machine.gapUm, 4.0);
    EXPECT_EQ(impulses[0].format, CImpulseSpec::EFormat::Float32);
    EXPECT_EQ(impulses[1].machine.gapUm, 6.0);
    EXPECT_EQ(impulses[1].machine.speedIps, 7.5);
    EXPECT_EQ(impulses[1].format, CImpulseSpec::EFormat::Integer24);
    EXPECT_EQ(impulses[1].peak, -0.5);
}

TEST(AnImpulse, IsRefusedByWhatIsWrongWithIt)
{
    const std::string good = R"(<impulse id="3" name="a" speed-ips="15")";
    struct CRow {
        std::string text;
        const char* error;
    };
    for (const CRow& row :
         {CRow{"<impulses", "line 1: Error parsing start element tag"},
          CRow{"<impulses/>", "no impulses"},
          CRow{document(R"(<impulse id="3" speed-ips="15"/>)"), "impulse '' has no name"},
          CRow{document(R"(<impulse id="x" name="a"/>)"), "impulse 'a' has no number as its id"},
          CRow{document(R"(<impulse id="3" name="a"/>)"), "impulse 'a' needs a number 'speed-ips'"},
          CRow{document(good + R"( gap-um="4um"/>)"), "impulse 'a' needs a number 'gap-um'"},
          CRow{document(good + R"( gap-um="0"/>)"), "impulse 'a' has 'gap-um' out of range"},
          CRow{document(good + R"( gap-um="nan"/>)"), "impulse 'a' has 'gap-um' out of range"},
          CRow{document(good + R"( peak-sample="64"/>)"),
               "impulse 'a' has its peak behind its end"},
          CRow{document(good + R"( gap="4"/>)"), "impulse 'a' has the unknown attribute 'gap'"},
          CRow{document(good + "/>", R"( gap="4")"), "impulse 'a' has the unknown attribute 'gap'"},
          CRow{document(good + R"( format="mp3"/>)"),
               "impulse 'a' has the format 'mp3', not float32 or integer24"},
          CRow{document(good + "/>" + good + "/>"), "impulse 'a' has the id of another"}})
        EXPECT_EQ(errorOf(row.text), row.error);
}

} // namespace
} // namespace tsm
