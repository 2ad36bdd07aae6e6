#include "Audio/Filters/CAudioFilterFIRLPGen.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Filters/CAudioFilterGenArrayItem.h"
#include "Audio/Filters/CAudioFilterHBFGen.h"
#include "Core/CResourceEntry.h"
#include "Tests/Support/CTestTree.h"

#include <cmath>
#include <numbers>

namespace tsm {
namespace {

class AFilterGenerator : public ATree {
protected:
    static constexpr CCreatorRow kCreators[] = {
        creatorRow<CObject>("core:object"),
        creatorRow<CAudioFilterFIRLPGen>("audio:fltgen-firlp"),
        creatorRow<CAudioFilterHBFGen>("audio:fltgen-hbf"),
        creatorRow<CAudioFilterGenArray>("audio:fltgen-array"),
        creatorRow<CAudioFilterGenArrayItem>("audio:fltgen-array-item"),
    };

    void SetUp() override
    {
        application = std::make_unique<CApplication>();
        ASSERT_OK(application->start(kCreators, static_cast<int>(std::size(kCreators)),
                                     kResourceTable, "SharedData.xml"));
        ASSERT_OK(application->initRootObject(root, CString()));
    }
    CAudioFilterGen* find(const char* array, int index)
    {
        CAudioFilterGenArray* found = nullptr;
        EXPECT_OK(root->findObjectChecked(found, array));
        return found ? found->getItem(index) : nullptr;
    }
    CAudioFilter& design(const CAudioFilterParams& params, double sampleRate)
    {
        filters.clear();
        CAudioFilterGen* generator = find("shared::audio.fltarray.firlp", 0);
        generator->generate(params, sampleRate, filters);
        EXPECT_EQ(filters.getCount(), 1);
        return filters[0];
    }
    static CAudioFilterParams params(double seconds, double frequency, double beta,
                                     double isFixed = 1.0)
    {
        CAudioFilterParams made;
        made.set("length", seconds);
        made.set("freq", frequency);
        made.set("beta", beta);
        made.set("fixsr", isFixed);
        return made;
    }
    CError* build(const char* tag, const char* a, const char* b)
    {
        CAttrMap attrs;
        attrs.setText("a", a);
        attrs.setText("b", b);
        CObject* made = nullptr;
        return root->createChild(made, tag, "x", false, nullptr, &attrs);
    }

    COwnedArray<CAudioFilter> filters;
};

TEST_F(AFilterGenerator, IsFoundByTheIndexInItsArray)
{
    COwnedArray<CAudioFilter> made;
    find("shared::audio.fltarray.hbf-oversample", 0)->generate({}, 48000.0, made);
    find("shared::audio.fltarray.hbf-oversample", 1)->generate({}, 48000.0, made);
    EXPECT_EQ(made[0].branches.getCount(), 10);
    EXPECT_EQ(made[1].branches.getCount(), 8);
    EXPECT_DOUBLE_EQ(made[1].branches[3], 0.7160529805331276);
    EXPECT_DOUBLE_EQ(made[1].branches[4], 0.07687418703582989);
    EXPECT_EQ(find("shared::audio.fltarray.hbf-oversample", 2), nullptr);
}

TEST_F(AFilterGenerator, RefusesBadDefinitions)
{
    EXPECT_FAILS_WITH(build("audio:fltgen-hbf", "", "0.5"), "Not enough 'a' coefficients defined.");
    EXPECT_FAILS_WITH(build("audio:fltgen-hbf", "0.5", " "),
                      "Not enough 'b' coefficients defined.");
    EXPECT_FAILS_WITH(build("audio:fltgen-hbf", "0.1,0.2", "0.5"),
                      "Coefficient count should match in 'a' and 'b' coefficient lists.");
    EXPECT_FAILS_WITH(build("audio:fltgen-hbf", "0.1,x", "0.5,0.6"),
                      "Invalid 'a' coefficient 'x' specified.");
    EXPECT_FAILS_WITH(build("audio:fltgen-hbf", "1,2,3,4,5,6,7,8,9", "1,2,3,4,5,6,7,8,9"),
                      "More than 8 coefficients in a list.");
    EXPECT_FAILS_WITH(build("audio:fltgen-array-item", "", ""),
                      "CAudioFilterGenArray class parent expected.");
}

TEST_F(AFilterGenerator, HasTheLengthsOfTheResamplersFilters)
{
    EXPECT_EQ(design(params(0.015, 11025, 18), 96000).taps.getCount(), 661);
    EXPECT_EQ(design(params(0.024, 10980, 18), 96000).taps.getCount(), 1063);
    EXPECT_EQ(design(params(0.0016, 12000, 18.4), 96000).latency, 32);
    const CAudioFilter& tiny = design(params(0.00001, 11025, 18), 44100);
    ASSERT_EQ(tiny.taps.getCount(), 1);
    EXPECT_DOUBLE_EQ(tiny.taps[0], 0.5);
}

TEST_F(AFilterGenerator, DependsOnTheRateOnlyWhenToldSo)
{
    const CArray<double> fixed = design(params(0.001, 11025, 18), 44100).taps;
    const CArray<double> other = design(params(0.001, 11025, 18), 96000).taps;
    EXPECT_TRUE(std::equal(fixed.begin(), fixed.end(), other.begin(), other.end()));
    EXPECT_EQ(design(params(0.001, 11025, 18, 0.0), 88200).taps.getCount(), 177);
    const CArray<double> limit = design(params(0.01, 11025, 350), 44100).taps;
    const CArray<double> beyond = design(params(0.01, 11025, 400), 44100).taps;
    EXPECT_TRUE(std::equal(limit.begin(), limit.end(), beyond.begin(), beyond.end()));
    EXPECT_LE(design(params(0.5, 20, 18, 0.0), 3.0e6).taps.getCount(), 1 << 24);
}

TEST_F(AFilterGenerator, StopsTheImagesOfAnOversampler)
{
    // The steep filter passes 20 kHz of 44.1 and stops from there, mirrored, on; the rates are
    // those before the doubling, so 0.25 is the new rate's half band.
    const CAudioFilter& filter = design(params(0.015, 11025, 18), 88200);
    const auto responseDb = [&](double frequency) {
        double sum = 0.0;
        for (int i = 0; i < filter.taps.getCount(); ++i)
            sum += filter.taps[i] *
                   std::cos(2.0 * std::numbers::pi * frequency * (i - filter.latency));
        return 20.0 * std::log10(std::abs(sum));
    };
    EXPECT_NEAR(responseDb(0.0), 0.0, 1e-6);
    EXPECT_NEAR(responseDb(20000.0 / 88200), 0.0, 0.1);
    for (double frequency = 0.27; frequency < 0.5; frequency += 0.0037)
        EXPECT_LT(responseDb(frequency), -140.0) << frequency;
}

} // namespace
} // namespace tsm
