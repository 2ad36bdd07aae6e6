#include "Core/CMemoryReader.h"
#include "Core/CResourceEntry.h"
#include "Core/CResourceMap.h"
#include "Other/CFileSet.h"
#include "Other/CWaveFile.h"
#include "Tests/Support/CTestTree.h"
#include "Tools/Support/CToolFile.h"
#include "Tools/impulse/CImpulseReader.h"
#include "Tools/impulse/CResponseTable.h"
#include "Tools/impulse/CTapeResponse.h"

#include <algorithm>
#include <cmath>

namespace tsm {
namespace {

/// One embedded impulse, read as the engine reads it.
struct CImpulse {
    CWaveFile file;
    std::vector<double> samples;

    [[nodiscard]] double db(double hz) const
    {
        const double rate = file.getSampleRate();
        return 20.0 * std::log10(CResponseTable::magnitudeAt(samples, rate, hz) /
                                 CResponseTable::magnitudeAt(samples, rate, 1000.0));
    }
};

class TheTapeImpulses : public testing::Test {
protected:
    void SetUp() override
    {
        CResourceMap::get().addAll(kResourceTable);
        ASSERT_OK(set.loadResource("Impulses/ReelpathImpulses.fs"));
    }

    void load(std::uint32_t id, CImpulse& impulse)
    {
        const CFileSet::CItem* item = set.find(id);
        ASSERT_NE(item, nullptr);
        CMemoryReader stream(item->getData(), item->getSize());
        ASSERT_OK(impulse.file.open(stream));
        ASSERT_EQ(impulse.file.getChannelCount(), 1);
        impulse.samples.resize(static_cast<std::size_t>(impulse.file.getSampleCount()));
        double* const channels[] = {impulse.samples.data()};
        std::int64_t gotten = 0;
        ASSERT_OK(impulse.file.read(channels, impulse.file.getSampleCount(), gotten));
        ASSERT_EQ(gotten, impulse.file.getSampleCount());
    }

    CFileSet set;
};

TEST_F(TheTapeImpulses, HaveTheFormatsAndPeaksThatTheEngineCountsOn)
{
    struct CRow {
        const char* name;
        double rate, peak;
        std::size_t count, place;
        std::uint32_t id;
        bool isFloat;
    };
    const CRow rows[] = {{"Tape 1", 44100.0, 0.95, 4498, 58, 1, true},
                         {"Tape 1 B", 44100.0, 0.95, 4477, 58, 2, true},
                         {"Tape 1 C", 44100.0, 0.95, 4424, 58, 3, true},
                         {"Tape 2", 44100.0, 0.599, 4498, 58, 4, true},
                         {"Tape 2 B", 44100.0, -0.95, 6217, 59, 5, true},
                         {"Tape 2 C", 44104.0, -0.95, 5408, 59, 6, true},
                         {"Tape 3", 44100.0, 0.447, 3637, 58, 7, true},
                         {"Tape 4", 44100.0, 0.966, 26240, 58, 8, false}};
    ASSERT_EQ(set.getCount(), static_cast<int>(std::size(rows)));
    for (const CRow& row : rows) {
        SCOPED_TRACE(row.name);
        CImpulse impulse;
        ASSERT_NO_FATAL_FAILURE(load(row.id, impulse));
        EXPECT_EQ(set.find(row.id)->getName(), row.name);
        EXPECT_EQ(impulse.file.getIsFloat(), row.isFloat);
        EXPECT_EQ(impulse.file.getRealBits(), row.isFloat ? 32 : 24);
        EXPECT_EQ(impulse.file.getSampleRate(), row.rate);
        ASSERT_EQ(impulse.samples.size(), row.count);
        EXPECT_NEAR(impulse.samples[row.place], row.peak, 0x1p-23); // a step of either format
        for (std::size_t i = 0; i < row.count; ++i)
            ASSERT_TRUE(i == row.place || std::abs(impulse.samples[i]) < std::abs(row.peak)) << i;
    }
}

TEST_F(TheTapeImpulses, SoundAsTheirMachinesAreDesigned)
{
    std::string text;
    std::string error;
    std::vector<CImpulseSpec> specs;
    ASSERT_TRUE(CToolFile::read(TSM_DATA_FOLDER "/Impulses/ReelpathImpulses.xml", text, error));
    ASSERT_TRUE(CImpulseReader::read(text, specs, error));
    for (const CImpulseSpec& spec : specs) {
        SCOPED_TRACE(spec.name);
        CImpulse impulse;
        CTapeResponse design;
        ASSERT_NO_FATAL_FAILURE(load(spec.id, impulse));
        ASSERT_TRUE(design.make(spec.machine, spec.rate, 131073));
        // The end that is cut off counts below 30 Hz; the files' steps count below -40 dB.
        for (int step = 0; step < 68; ++step) {
            const double hz = 30.0 * std::pow(1.1, step);
            const double wanted = 20.0 * std::log10(design.at(hz));
            EXPECT_TRUE(wanted < -40.0 || std::abs(impulse.db(hz) - wanted) < 0.1) << hz << " Hz";
        }
    }
}

TEST_F(TheTapeImpulses, AreSilentBeforeTheSoundAndAtTheirEnd)
{
    for (std::uint32_t id = 1; id <= 8; ++id) {
        CImpulse impulse;
        ASSERT_NO_FATAL_FAILURE(load(id, impulse));
        double before = 0.0;
        double after = 0.0;
        for (std::size_t i = 0; i < 40; ++i)
            before = std::max(before, std::abs(impulse.samples[i]));
        for (std::size_t i = impulse.samples.size() - 40; i < impulse.samples.size(); ++i)
            after = std::max(after, std::abs(impulse.samples[i]));
        EXPECT_EQ(before, 0.0) << id;
        EXPECT_LT(after, 1e-5) << id;
    }
}

TEST_F(TheTapeImpulses, DifferAudiblyFromOneAnother)
{
    // Third octaves of what carries music; the mean is taken out, as the engine evens out levels.
    std::vector<std::vector<double>> responses;
    for (std::uint32_t id = 1; id <= 8; ++id) {
        CImpulse impulse;
        ASSERT_NO_FATAL_FAILURE(load(id, impulse));
        responses.emplace_back();
        double sum = 0.0;
        for (int band = 0; band < 28; ++band) {
            responses.back().push_back(impulse.db(31.5 * std::exp2(band / 3.0)));
            sum += responses.back().back();
        }
        for (double& level : responses.back())
            level -= sum / 28.0;
    }
    for (std::size_t a = 0; a < 8; ++a)
        for (std::size_t b = a + 1; b < 8; ++b) {
            double largest = 0.0;
            for (std::size_t band = 0; band < 28; ++band)
                largest = std::max(largest, std::abs(responses[a][band] - responses[b][band]));
            // 1 dB in a third octave is what listeners notice in direct comparison.
            EXPECT_GT(largest, 1.5) << "impulses " << a + 1 << " and " << b + 1;
        }
}

} // namespace
} // namespace tsm
