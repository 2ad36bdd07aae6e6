#include "Audio/Processes/CBankedImpulseCache.h"
#include "Audio/Processes/CRanmar.h"
#include "Tests/Audio/Processes/CConvolverRig.h"

#include <thread>

namespace tsm::test {

namespace {

TEST(Ranmar, GivesThePublishedNumbers)
{
    // James (1990): the seeds behind his 1802 and 9373; behind 20000 numbers these come next.
    CRanmar random(12, 34, 56, 78);
    for (int i = 0; i < 20000; ++i)
        std::ignore = random.next();
    for (const double value : {6533892.0, 14220222.0, 7275067.0, 6172232.0, 8354498.0, 10633180.0})
        EXPECT_EQ(random.next() * 4096.0 * 4096.0, value);
}

class AnImpulseCache : public ABankedConvolver {
protected:
    void SetUp() override
    {
        ABankedConvolver::SetUp();
        ASSERT_OK(root->findObjectChecked(bank, "shared::bank"));
    }
    CBankedImpulseRef load(std::uint32_t id, double rate, int channels = 2)
    {
        CImpulseSource source;
        EXPECT_OK(CImpulseSource::fromSet(source, *bank, id));
        CBankedImpulseRef impulse;
        EXPECT_OK(cache.load(impulse, source, rate, channels));
        return impulse;
    }
    CBankedImpulseRef loadFile(const std::string& path)
    {
        CImpulseSource source;
        EXPECT_OK(CImpulseSource::fromFile(source, CString::fromUtf8(path)));
        CBankedImpulseRef impulse;
        EXPECT_OK(cache.load(impulse, source, 44100.0, 2));
        return impulse;
    }
    CBankedImpulseCache& cache = CBankedImpulseCache::get();
    CFileSetObject* bank = nullptr;
};

TEST_F(AnImpulseCache, SharesWhatIsTheSame)
{
    const CBankedImpulseRef first = load(1, 44100.0);
    EXPECT_EQ(load(1, 44100.0), first);
    EXPECT_EQ(load(1, 44100.0, 16), first) << "it has no more channels";
    EXPECT_NE(load(1, 48000.0), first);
    EXPECT_NE(load(2, 44100.0), first);
    restart();
    const int before = cache.getCount();
    step();
    EXPECT_EQ(cache.getCount(), before) << "the convolver takes what is there";
    // Of another set, an item of the same number is another one.
    CAttrMap attrs;
    attrs["file"] = CAttrValue("Impulses/ReelpathImpulses.fs");
    ASSERT_OK(root->createChild(bank, "fileset", "other", false, nullptr, &attrs));
    EXPECT_NE(load(1, 44100.0), first);
}

TEST_F(AnImpulseCache, KnowsAFileByWhatItHolds)
{
    const CScratchFolder folder;
    writeImpulse(folder / "a.wav", {{1.0, 0.5}});
    const CBankedImpulseRef first = loadFile(folder / "a.wav");
    EXPECT_EQ(loadFile(folder / "a.wav"), first);
    // The same length, put in its place with the time of the former one.
    const auto time = std::filesystem::last_write_time(folder / "a.wav");
    writeImpulse(folder / "b.wav", {{0.5, 1.0}});
    std::filesystem::rename(folder / "b.wav", folder / "a.wav");
    std::filesystem::last_write_time(folder / "a.wav", time);
    const CBankedImpulseRef second = loadFile(folder / "a.wav");
    EXPECT_NE(second, first);
    // And written over.
    writeImpulse(folder / "a.wav", {{0.25, 1.0}});
    std::filesystem::last_write_time(folder / "a.wav", time + std::chrono::milliseconds(1));
    EXPECT_NE(loadFile(folder / "a.wav"), second);
}

TEST_F(AnImpulseCache, KeepsALimitedAmountOfWhatNobodyUses)
{
    const CBankedImpulseRef held = load(1, 44100.0);
    // 3.4 MB each, so that 4 are within the limit.
    for (int i = 0; i < 20; ++i)
        std::ignore = load(8, 352800.0 + i);
    cache.trim();
    EXPECT_EQ(cache.getCount(), 1 + 4);
    EXPECT_EQ(load(1, 44100.0), held) << "what is used stays";
    CBankedImpulseRef used[6];
    for (int i = 0; i < 6; ++i)
        used[i] = load(8, 352800.0 + i);
    EXPECT_GE(cache.getCount(), 1 + 6);
    for (CBankedImpulseRef& impulse : used)
        impulse.reset();
    cache.trim();
    EXPECT_EQ(cache.getCount(), 1 + 4);
}

TEST_F(AnImpulseCache, KeepsNothingOfAFailedLoad)
{
    const CScratchFolder folder;
    folder.write("no.wav", "no sound");
    CImpulseSource source;
    ASSERT_OK(CImpulseSource::fromFile(source, CString::fromUtf8((folder / "no.wav").string())));
    const CBankedImpulseRef former = load(1, 44100.0);
    CBankedImpulseRef impulse = former;
    const int before = cache.getCount();
    EXPECT_NE(takeMessage(cache.load(impulse, source, 44100.0, 1)), "");
    EXPECT_EQ(impulse, former);
    EXPECT_EQ(cache.getCount(), before);
}

class ImpulseCacheThreads : public AnImpulseCache {};

TEST_F(ImpulseCacheThreads, ShareAndDropImpulses)
{
    std::vector<std::thread> threads;
    for (unsigned seed = 0; seed < 3; ++seed)
        threads.emplace_back([this, seed] {
            rsk::CDSPZeroLatencyConvolver convolver(static_cast<int>(seed));
            rsk::CAlignedArray<double> work(rsk::CDSPRealFFT::workCount(13));
            CSamples samples = uniformNoise(300, seed);
            for (unsigned i = 0; i < 60; ++i) {
                convolver.load(channelOf(load(1 + (seed + i) % 8, 44100.0 + i % 4), 0));
                convolver.process(samples.data(), samples.data(), 300, work.data());
                if (i % 7 == 0)
                    cache.clear();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

} // namespace tsm::test
