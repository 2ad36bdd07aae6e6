// The plug-in as a host runs it, beside effects that do comparable work, all in one run: stereo, 32
// bits, 44.1 kHz, loud noise, each with the settings it comes with. Peers that aren't installed are
// left out; `Tools/scripts/setup.sh quality` installs them.

#include "Bench/Peers/CLv2Plugin.h"
#include "Bench/Support/Check.h"
#include "Tools/hostlib/CHostContext.h"
#include "Tools/hostlib/CVstInstance.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace tsm {
namespace {

using namespace Steinberg;
using namespace Steinberg::Vst;

constexpr double kRate = 44100.0;
constexpr int kFrames = 65536;

/// Stereo noise that goes round, and room for what comes out.
class CSound {
public:
    explicit CSound(int block) : out(2 * static_cast<std::size_t>(block)), count(block)
    {
        std::mt19937 generator(1);
        std::uniform_real_distribution<float> uniform(-0.7F, 0.7F);
        in.resize(std::size_t{2} * kFrames);
        for (float& sample : in)
            sample = uniform(generator);
    }

    /// Calls `work(in, out, count)` for the next block.
    template <class Work>
    void next(Work&& work)
    {
        float* const inputs[] = {in.data() + at, in.data() + kFrames + at};
        float* const outputs[] = {out.data(), out.data() + count};
        work(inputs, outputs, count);
        benchmark::DoNotOptimize(out.data());
        at = (at + count) % kFrames;
    }

private:
    std::vector<float> in;
    std::vector<float> out;
    int count;
    int at = 0;
};

/// In per cent of a core at the speed of the sound; "m" stands for thousandths.
void tellCost(benchmark::State& state, int block)
{
    state.counters["core"] =
        benchmark::Counter(block / (100.0 * kRate), benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

void runPeer(benchmark::State& state, const std::string& uri, int block)
{
    CSound sound(block);
    CLv2Plugin plugin(uri, kRate, block);
    for (auto _ : state)
        sound.next([&](float* const* in, float* const* out, int count) {
            plugin.process(in, out, count);
        });
    tellCost(state, block);
}

void runOwn(benchmark::State& state, int block)
{
    CSound sound(block);
    const auto context = IPtr<CHostContext>::owned(new CHostContext);
    CVstBundle bundle;
    CVstInstance instance;
    const CVstClass* effect = nullptr;
    check(bundle.open(TSM_BUNDLE, context->asUnknown()));
    check(bundle.findEffect(effect));
    check(instance.create(bundle, *effect, context->asUnknown()));
    CVstSetUp setUp;
    setUp.maxBlock = block;
    setUp.isDouble = false;
    check(instance.setUp(setUp));
    check(instance.start());
    AudioBusBuffers input = {};
    AudioBusBuffers output = {};
    input.numChannels = output.numChannels = 2;
    ProcessData data = {};
    data.symbolicSampleSize = kSample32;
    data.numInputs = data.numOutputs = 1;
    data.inputs = &input;
    data.outputs = &output;
    for (auto _ : state)
        sound.next([&](float* const* in, float* const* out, int count) {
            input.channelBuffers32 = const_cast<float**>(in);
            output.channelBuffers32 = const_cast<float**>(out);
            data.numSamples = count;
            instance.getProcessor().process(data);
        });
    tellCost(state, block);
    instance.stop();
}

struct CPeer {
    const char* name;
    const char* uri;
};

constexpr CPeer kPeers[] = {
    {"calf_tape_simulator", "http://calf.sourceforge.net/plugins/TapeSimulator"},
    {"calf_saturator", "http://calf.sourceforge.net/plugins/Saturator"},
    {"invada_tube", "http://invadarecords.com/plugins/lv2/tube/stereo"},
};

const bool kIsRegistered = [] {
    for (const int block : {512, 32}) {
        const std::string suffix = "/" + std::to_string(block);
        benchmark::RegisterBenchmark(("reelpath" + suffix).c_str(),
                                     [block](benchmark::State& state) { runOwn(state, block); });
        for (const CPeer& peer : kPeers)
            if (CLv2Plugin::isInstalled(peer.uri))
                benchmark::RegisterBenchmark(
                    (peer.name + suffix).c_str(),
                    [peer, block](benchmark::State& state) { runPeer(state, peer.uri, block); });
    }
    return true;
}();

} // namespace
} // namespace tsm
