#include "Tools/Support/HeapWatch.h"
#include "Tools/conform/CLivePlugin.h"
#include "Tools/conform/COddStream.h"
#include "Tools/conform/ConformCases.h"

#include "Audio/VST/VstText.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr CVstSetUp kSetUp{.rate = 48000.0, .maxBlock = 512, .channelCount = 0, .isDouble = false};

IPtr<COddStream> streamOf(std::string bytes = {})
{
    return IPtr<COddStream>::owned(new COddStream(std::move(bytes)));
}

/// Whether a user sees the same value: what has few values may keep another number for one.
bool isShownAlike(CLivePlugin& plugin, const CParamValue& a, const CParamValue& b)
{
    IEditController& controller = plugin.getInstance().getController();
    String128 first = {};
    String128 second = {};
    return controller.getParamStringByValue(a.id, a.value, first) == kResultOk &&
           controller.getParamStringByValue(b.id, b.value, second) == kResultOk &&
           viewOf(first, kString128Size) == viewOf(second, kString128Size);
}

/// Finds where the values aren't those expected.
void expectValues(const std::vector<CParamValue>& expected, CLivePlugin& plugin,
                  const std::string& when, CFindings& findings)
{
    const std::vector<CParamValue> came = plugin.getAll();
    for (std::size_t i = 0; i < std::min(expected.size(), came.size()); ++i) {
        // Some save floats.
        const bool isNear = std::abs(expected[i].value - came[i].value) <= 1e-6;
        findings.expect(isNear || isShownAlike(plugin, expected[i], came[i]),
                        "parameter " + std::to_string(expected[i].id) + " " + when,
                        numberText(expected[i].value), numberText(came[i].value));
    }
}

CError* checkRoundTrip(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    std::size_t size = 0;
    const int rounds = plugin.countRounds(40, 8);
    for (int round = 0; round < rounds; ++round) {
        CLivePlugin first;
        CLivePlugin second;
        CLivePlugin third;
        TSM_TRY(first.start(plugin, kSetUp, findings));
        TSM_TRY(second.start(plugin, kSetUp, findings));
        TSM_TRY(third.start(plugin, kSetUp, findings));
        std::vector<CParamValue> values = first.drawValues(static_cast<unsigned>(round) + 1);
        for (const CVstParam& param : first.getParams().getAll())
            for (CParamValue& each : values)
                if (each.id == param.id && param.has(ParameterInfo::kIsBypass))
                    each.value = round % 2;
        first.setAll(values);
        std::string saved;
        std::string again;
        TSM_TRY(first.getInstance().getState(saved));
        // Saving changes nothing.
        expectValues(values, first, "behind getState()", findings);
        TSM_TRY(second.getInstance().setState(saved));
        expectValues(values, second, "in another instance behind setState()", findings);
        TSM_TRY(second.getInstance().getState(again));
        TSM_TRY(third.getInstance().setState(again));
        expectValues(values, third, "behind the state of a state", findings);
        size = saved.size();
    }
    findings.note(std::to_string(size) + " bytes");
    return nullptr;
}

/// The same sound behind a state as before it.
CError* checkSound(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    for (unsigned seed = 1; seed <= 4; ++seed) {
        CVstInstance first;
        CVstInstance second;
        TSM_TRY(plugin.make(first));
        TSM_TRY(plugin.make(second));
        CLivePlugin drawing;
        TSM_TRY(drawing.start(plugin, kSetUp, findings));
        const std::vector<CParamValue> values = drawing.drawValues(seed);
        drawing.setAll(values);
        std::string state;
        std::string again;
        TSM_TRY(drawing.getInstance().getState(state));
        // Both from a state, one through another instance: neither has a past of its own.
        TSM_TRY(first.setState(state));
        TSM_TRY(first.getState(again));
        TSM_TRY(second.setState(again));
        CChannels sounds[2];
        CVstInstance* const instances[] = {&first, &second};
        for (std::size_t i = 0; i < 2; ++i) {
            TSM_TRY(instances[i]->setUp(kSetUp));
            TSM_TRY(instances[i]->start());
            CBlockRun run(*instances[i], kSetUp, findings);
            run.processAll(makeNoise(run.getInputCount(), 16384, 0.25), {512}, sounds[i]);
        }
        const CSoundGap gap = findLargestGap(sounds[0], sounds[1]);
        findings.expect(gap.size <= 1e-5 * std::max(1.0, peakOf(sounds[0])),
                        "the sound of two instances of one state", "the same",
                        "differs by " + numberText(gap.size) + " in frame " +
                            std::to_string(gap.frame));
    }
    return nullptr;
}

/// Two settings that differ as far as possible, as bytes and values.
struct CStates {
    std::string stored;
    std::vector<CParamValue> storedValues;
    std::vector<CParamValue> presentValues;
};

CError* prepare(CLivePlugin& live, CStates& states)
{
    states.storedValues = live.drawValues(11);
    live.setAll(states.storedValues);
    TSM_TRY(live.getInstance().getState(states.stored));
    states.presentValues = live.drawValues(12);
    live.setAll(states.presentValues);
    return nullptr;
}

/// Short reads: as many bytes as a pipe has.
CError* checkShortReads(CLivePlugin& live, const CStates& states, CFindings& findings)
{
    for (const int32 step : {1, 3, 7, 64}) {
        live.setAll(states.presentValues);
        const auto stream = streamOf(states.stored);
        stream->setStep(step);
        const std::string when =
            "behind setState() of a stream that gives " + std::to_string(step) + " bytes at once";
        const bool isTaken = live.getInstance().getComponent().setState(stream.get()) == kResultOk;
        stream->rewind();
        if (isTaken)
            live.getInstance().getController().setComponentState(stream.get());
        expectValues(isTaken ? states.storedValues : states.presentValues, live,
                     when + (isTaken ? "" : ", refused,"), findings);
    }
    return nullptr;
}

/// A plug-in may not say that a state is saved when it isn't.
CError* checkWrites(CLivePlugin& live, const CStates& states, CFindings& findings)
{
    live.setAll(states.storedValues);
    IComponent& component = live.getInstance().getComponent();
    const auto size = static_cast<int64>(states.stored.size());
    for (const int32 step : {1, 3, 7, 64}) {
        const auto stream = streamOf();
        stream->setStep(step);
        const bool isSaved = component.getState(stream.get()) == kResultOk;
        const auto came = static_cast<int64>(stream->getBytes().size());
        findings.expect(!isSaved || came == size,
                        "getState() into a stream that takes " + std::to_string(step) +
                            " bytes at once",
                        "all of " + std::to_string(size) + " bytes, or a refusal",
                        std::to_string(came) + " bytes and kResultOk");
    }
    for (const int64 end : {int64{0}, int64{1}, size / 2, size - 1}) {
        const auto stream = streamOf();
        stream->setEnd(end);
        findings.expectRefused("getState() into a stream that is full at " + std::to_string(end) +
                                   " bytes",
                               component.getState(stream.get()));
    }
    return nullptr;
}

CError* checkStreams(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, kSetUp, findings));
    CStates states;
    TSM_TRY(prepare(live, states));
    TSM_TRY(checkShortReads(live, states, findings));
    TSM_TRY(checkWrites(live, states, findings));
    const auto size = static_cast<int64>(states.stored.size());
    live.setAll(states.presentValues);
    for (const int64 end : {int64{0}, int64{1}, size / 2, size - 1}) {
        const auto stream = streamOf(states.stored);
        stream->setEnd(end);
        const tresult result = live.getInstance().getComponent().setState(stream.get());
        if (!stream->hasFailed())
            continue; // a plug-in need not read what it has no use for
        findings.expectRefused(
            "setState() of a stream that breaks at " + std::to_string(end) + " bytes", result);
        expectValues(states.presentValues, live, "behind a stream that broke", findings);
    }
    TSM_TRY(live.getInstance().setState(states.stored));
    expectValues(states.storedValues, live, "behind a good stream at last", findings);
    return nullptr;
}

/// Damage to a state, one kind behind the other.
std::vector<std::string> damage(const std::string& state, int rounds)
{
    std::vector<std::string> all;
    const std::size_t count = state.size();
    const std::size_t step = std::max<std::size_t>(count / static_cast<std::size_t>(rounds), 1);
    for (std::size_t size = 0; size < count; size += size < 64 ? 1 : step)
        all.push_back(state.substr(0, size));
    std::mt19937 random(5);
    for (int i = 0; i < rounds && count > 0; ++i) {
        std::string bent = state;
        bent[random() % count] ^= static_cast<char>(1u << random() % 8);
        all.push_back(bent);
    }
    // Counts of things, wherever they stand.
    for (std::size_t at = 0; at + 4 <= count; at += at < 64 ? 1 : step)
        for (const char* const size : {"\xff\xff\xff\xff", "\xff\xff\xff\x7f", "\0\0\0\x80"}) {
            std::string bent = state;
            std::copy_n(size, 4, bent.begin() + static_cast<std::ptrdiff_t>(at));
            all.push_back(bent);
        }
    for (const std::size_t size : {1u, 16u, 1000u, 100000u}) {
        std::string noise(size, '\0');
        std::ranges::generate(noise, [&] { return static_cast<char>(random()); });
        all.push_back(noise);
        all.push_back(state.substr(0, std::min<std::size_t>(count, 16)) + noise);
    }
    all.push_back(state + state);
    return all;
}

/// Whether the plug-in is as sane as before.
void checkSanity(CLivePlugin& live, CFindings& findings)
{
    for (const CParamValue& each : live.getAll())
        findings.expect(each.value >= 0.0 && each.value <= 1.0,
                        "parameter " + std::to_string(each.id) + " behind a damaged state",
                        "0 to 1", numberText(each.value));
}

CError* checkDamage(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, kSetUp, findings));
    CStates states;
    TSM_TRY(prepare(live, states));
    constexpr std::size_t kMaxRequest = 64 << 20;
    int takenCount = 0;
    const std::vector<std::string> damaged = damage(states.stored, plugin.countRounds(600, 100));
    for (const std::string& bytes : damaged) {
        const auto stream = streamOf(bytes);
        beginHeapWatch();
        const tresult result = live.getInstance().getComponent().setState(stream.get());
        const CHeapCalls calls = endHeapWatch();
        findings.expect(calls.largest <= kMaxRequest + bytes.size(),
                        "memory asked for by a damaged state of " + std::to_string(bytes.size()) +
                            " bytes",
                        "in proportion", std::to_string(calls.largest) + " bytes at once");
        checkSanity(live, findings);
        if (result == kResultOk) {
            ++takenCount;
            live.setAll(states.presentValues);
        } else {
            expectValues(states.presentValues, live, "behind a damaged state that was refused",
                         findings);
        }
    }
    TSM_TRY(live.getInstance().setState(states.stored));
    expectValues(states.storedValues, live, "behind a good state at last", findings);
    CChannels out;
    live.getRun().processAll(makeNoise(live.getRun().getInputCount(), 4096, 0.25), {512}, out);
    findings.expect(isFinite(out), "the output behind damaged states", "finite samples", "others");
    findings.note(std::to_string(damaged.size()) + " damaged states, " +
                  std::to_string(takenCount) + " of them taken");
    return nullptr;
}

/// States of an instance that isn't set up, or sounds meanwhile.
CError* checkMoments(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, kSetUp, findings));
    CStates states;
    TSM_TRY(prepare(live, states));

    CVstInstance fresh;
    TSM_TRY(plugin.make(fresh));
    TSM_TRY(fresh.setState(states.stored)); // before any set-up
    std::string back;
    TSM_TRY(fresh.getState(back));
    TSM_TRY(live.getInstance().setState(back));
    expectValues(states.storedValues, live, "behind the state of an instance without set-up",
                 findings);

    const CChannels in = makeNoise(live.getRun().getInputCount(), 512, 0.25);
    CChannels out;
    for (int i = 0; i < 20; ++i) {
        live.getRun().process(in, 0, 512, out);
        live.setAll(states.presentValues);
        TSM_TRY(live.getInstance().setState(states.stored));
        expectValues(states.storedValues, live, "behind a state between two blocks", findings);
    }
    live.getRun().process(in, 0, 512, out);
    expectValues(states.storedValues, live, "a block behind a state", findings);
    findings.expect(isFinite(out), "the output between states", "finite samples", "others");
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"state.round-trip", "random values saved and loaded in other instances", checkRoundTrip},
    {"state.sound", "two instances of one state sound the same", checkSound},
    {"state.moments", "states before set-up and between blocks", checkMoments},
    {"state.streams", "short reads and writes, streams that fail", checkStreams},
    {"state.damaged", "cut, changed and random states do no harm", checkDamage, 3},
};

} // namespace

std::span<const CConformCase> stateCases()
{
    return kCases;
}

} // namespace tsm
