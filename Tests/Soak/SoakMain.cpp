// soak SECONDS [SEED]: instances that come and go, with windows, under changes of all kinds, while
// sound runs. Ends with 1 when a sample was out of bounds, a call failed that may not, or memory
// grew; what a sanitizer finds ends the program itself.

#include "Tests/Soak/CSoakInstance.h"
#include "Tests/Support/HeapAllocations.h"
#include "Tests/Support/ResidentMemory.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace tsm;
using namespace tsm::test;
using CSteadyClock = std::chrono::steady_clock;

constexpr std::size_t kMaxInstances = 6;
constexpr double kMiB = 1024.0 * 1024.0;
constexpr double kMaxGrowth = 24.0;      // MiB, from the half of the time on
constexpr double kSecondsToGrow = 120.0; // in less, all caches aren't full by half of it

/// A life of the framework: from the first instance to the end of the last. Returns the actions.
int live(CSoakRandom& random, std::vector<std::string>& states, double seconds)
{
    const auto end = CSteadyClock::now() + std::chrono::duration<double>(seconds);
    std::vector<std::unique_ptr<CSoakInstance>> instances;
    int actions = 0;
    const auto begin = [&] {
        instances.push_back(std::make_unique<CSoakInstance>(static_cast<unsigned>(random())));
        if (instances.size() == 1) {
            EXPECT_OK(CApplication::get()->registerCreator(creatorRow<CTestTimer>("test:timer")));
        }
    };
    begin();
    for (; CSteadyClock::now() < end; ++actions) {
        const auto which = static_cast<std::ptrdiff_t>(random() % instances.size());
        instances[static_cast<std::size_t>(which)]->act(random, states);
        EXPECT_TRUE(instances[static_cast<std::size_t>(which)]->isClean());
        if (random() % 64 == 0 && instances.size() < kMaxInstances)
            begin();
        else if (random() % 64 == 0 && instances.size() > 1)
            instances.erase(instances.begin() + which);
    }
    for (const auto& instance : instances)
        EXPECT_TRUE(instance->isClean());
    return actions;
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (argc < 2 || argc > 3 || std::atof(argv[1]) <= 0.0) {
        std::fprintf(stderr, "usage: soak SECONDS [SEED]\n");
        return 2;
    }
    const double seconds = std::atof(argv[1]);
    const unsigned seed =
        argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : std::random_device()();
    std::printf("soak: %g seconds, seed %u\n", seconds, seed);
    CSoakRandom random(seed);
    std::vector<std::string> states;
    const double lifeSeconds = std::clamp(seconds / 10.0, 1.0, 20.0);
    const auto start = CSteadyClock::now();
    double halfway = 0.0;
    double highest = 0.0;
    int actions = 0;
    int lives = 0;
    for (double elapsed = 0.0; elapsed < seconds; ++lives) {
        actions += live(random, states, lifeSeconds);
        elapsed = std::chrono::duration<double>(CSteadyClock::now() - start).count();
        std::printf("soak: %.0f MiB after %.0f seconds\n", residentBytes() / kMiB, elapsed);
        (elapsed < 0.5 * seconds ? halfway : highest) =
            std::max(elapsed < 0.5 * seconds ? halfway : highest, residentBytes() / kMiB);
        if (testing::Test::HasFailure())
            break;
    }
    std::printf("soak: %d actions in %d lives of the framework, %.0f MiB in the first half of the "
                "time, %.0f MiB in the second\n",
                actions, lives, halfway, highest);
    // A sanitizer keeps what was given back.
    const bool isGrown =
        countHeapAllocations() >= 0 && seconds >= kSecondsToGrow && highest > halfway + kMaxGrowth;
    if (isGrown)
        std::printf("soak: memory has grown\n");
    return testing::Test::HasFailure() || isGrown ? 1 : 0;
}
