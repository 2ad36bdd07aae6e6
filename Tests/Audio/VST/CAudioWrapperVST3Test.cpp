#include "Tests/Audio/VST/CComponentRig.h"

#include "Audio/VST/Interfaces/IMessage.h"
#include "Tools/hostlib/CHostAttributes.h"
#include "Tools/hostlib/CMemoryStream.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace tsm::test {

namespace {

constexpr ParamID kProgramId = 999;
constexpr int kExtParams = 12;
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::vector<double> tone(std::size_t count, double level = 0.5)
{
    std::vector<double> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = level * std::sin(0.05 * static_cast<double>(i));
    return samples;
}

bool isFinite(const CComponentRig::CChannels& channels)
{
    for (const std::vector<double>& channel : channels)
        for (const double sample : channel)
            if (!std::isfinite(sample))
                return false;
    return true;
}

class AComponent : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(rig.component);
        rig.initialize();
    }
    /// Loud enough that every stage works.
    void processSome(int blocks = 20)
    {
        for (int i = 0; i < blocks; ++i) {
            CComponentRig::CChannels block(2, tone(512));
            ASSERT_EQ(rig.process(block), kResultOk);
        }
    }
    CComponentRig rig;
};

TEST_F(AComponent, IsOneObjectWithoutAConnectionToItself)
{
    const auto unknown = queryAs<FUnknown>(rig.component.get());
    EXPECT_EQ(queryAs<FUnknown>(rig.processor.get()).get(), unknown.get());
    EXPECT_EQ(queryAs<FUnknown>(rig.controller.get()).get(), unknown.get());
    EXPECT_EQ(queryAs<FUnknown>(rig.units.get()).get(), unknown.get());
    EXPECT_FALSE(queryAs<IConnectionPoint>(rig.component.get()));
    EXPECT_TRUE(queryAs<ChannelContext::IInfoListener>(rig.component.get()));
    TUID controllerId;
    EXPECT_EQ(rig.component->getControllerClassId(controllerId), kNotImplemented);
}

TEST_F(AComponent, InitializesOnceAndAgainBehindItsEnd)
{
    EXPECT_EQ(rig.controller->initialize(nullptr), kResultFalse);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(rig.component->getBusCount(kAudio, kInput), 1);
        EXPECT_EQ(rig.component->getBusCount(kAudio, kOutput), 1);
        EXPECT_EQ(rig.component->getBusCount(kEvent, kInput), 1);
        EXPECT_EQ(rig.component->getBusCount(kEvent, kOutput), 0);
        EXPECT_EQ(rig.controller->getParameterCount(), kExtParams + 1);
        EXPECT_EQ(rig.component->terminate(), kResultOk);
        EXPECT_EQ(rig.controller->terminate(), kResultOk);
        EXPECT_EQ(rig.component->getBusCount(kAudio, kInput), 0);
        EXPECT_EQ(rig.controller->getParameterCount(), 0);
        EXPECT_EQ(rig.component->initialize(nullptr), kResultOk);
    }
}

TEST_F(AComponent, DescribesItsParameters)
{
    std::string titles;
    for (int32 i = 0; i < kExtParams; ++i) {
        ParameterInfo info;
        ASSERT_EQ(rig.controller->getParameterInfo(i, info), kResultOk);
        EXPECT_EQ(info.id, static_cast<ParamID>(i));
        const bool isBypass = CComponentRig::narrow(info.title) == "Bypass";
        EXPECT_EQ(info.flags, isBypass ? 0x10001 : 1);
        EXPECT_EQ(info.stepCount, isBypass ? 1 : 0);
        EXPECT_GE(info.defaultNormalizedValue, 0.0);
        EXPECT_LE(info.defaultNormalizedValue, 1.0);
        titles += CComponentRig::narrow(info.title) + " ";
    }
    EXPECT_EQ(titles, "Bypass RecGain HiEmphs Hardnes Saturat Flutter CabEnab CabIndx HiGain "
                      "OutGain RecMode FlMode ");
    ParameterInfo program;
    ASSERT_EQ(rig.controller->getParameterInfo(kExtParams, program), kResultOk);
    EXPECT_EQ(program.id, kProgramId);
    EXPECT_EQ(program.flags, 0x8008);
    EXPECT_EQ(program.stepCount, 9);
    ParameterInfo none;
    EXPECT_EQ(rig.controller->getParameterInfo(kExtParams + 1, none), kResultFalse);
    EXPECT_EQ(rig.controller->getParameterInfo(-1, none), kResultFalse);
}

TEST_F(AComponent, SpeaksInTheTextsOfItsConverters)
{
    EXPECT_EQ(rig.textOf(3, 0.2), "20.0");
    EXPECT_EQ(rig.textOf(11, rig.controller->getParamNormalized(11)), "PRO");
    ParamValue value = -1.0;
    TChar percent[] = u"35";
    EXPECT_EQ(rig.controller->getParamValueByString(3, percent, value), kResultOk);
    EXPECT_NEAR(value, 0.35, 1e-12);
    const double present = rig.controller->getParamNormalized(3);
    TChar nonsense[] = u"what?";
    rig.controller->getParamValueByString(3, nonsense, value);
    EXPECT_EQ(value, present) << "a host that sets what it got changes nothing";
    EXPECT_EQ(rig.controller->getParamNormalized(3), present);
    // As a Windows host's text, with more than it should be.
    std::u16string endless(1000, u'9');
    EXPECT_EQ(rig.controller->getParamValueByString(3, endless.data(), value), kResultOk);
    EXPECT_TRUE(value >= 0.0 && value <= 1.0);
}

TEST_F(AComponent, TakesNoValuesThatAreNone)
{
    const double present = rig.controller->getParamNormalized(1);
    for (const double bad : {kNotANumber, kInfinity, -kInfinity}) {
        rig.controller->setParamNormalized(1, bad);
        const double now = rig.controller->getParamNormalized(1);
        EXPECT_TRUE(now >= 0.0 && now <= 1.0) << bad;
    }
    rig.controller->setParamNormalized(1, kNotANumber);
    rig.controller->setParamNormalized(1, present);
    rig.controller->setParamNormalized(1, 7.0);
    EXPECT_EQ(rig.controller->getParamNormalized(1), 1.0);
    rig.setUp(44100.0);
    for (const double bad : {kNotANumber, kInfinity, -3.0, 9.0})
        rig.changes->add(1, 3, bad);
    rig.changes->add(12345, 0, 0.5);
    rig.changes->add(2, -50, 0.25);
    rig.changes->add(4, 5000, 0.75);
    processSome(1);
    EXPECT_EQ(rig.controller->getParamNormalized(2), 0.25);
    EXPECT_EQ(rig.controller->getParamNormalized(4), 0.75) << "beyond the block counts as its end";
}

TEST_F(AComponent, ArrangesItsBuses)
{
    SpeakerArrangement in = 0x103;
    SpeakerArrangement out = 3;
    EXPECT_EQ(rig.processor->setBusArrangements(&in, 1, &out, 1), kResultFalse);
    SpeakerArrangement got = 0;
    EXPECT_EQ(rig.processor->getBusArrangement(kInput, 0, got), kResultOk);
    EXPECT_EQ(got, 3u);
    in = out = 0x80000;
    EXPECT_EQ(rig.processor->setBusArrangements(&in, 1, &out, 1), kResultOk);
    EXPECT_EQ(rig.processor->getBusArrangement(kOutput, 0, got), kResultOk);
    EXPECT_EQ(got, 0x80000u);
    EXPECT_EQ(rig.processor->setBusArrangements(nullptr, 0, nullptr, 0), kResultFalse);
    EXPECT_EQ(rig.processor->setBusArrangements(nullptr, 1, &out, 1), kInvalidArgument);
    EXPECT_EQ(rig.processor->setBusArrangements(&in, -1, &out, 1), kInvalidArgument);
    EXPECT_EQ(rig.processor->getBusArrangement(kInput, 7, got), kInvalidArgument);
    BusInfo info;
    ASSERT_EQ(rig.component->getBusInfo(kAudio, kInput, 0, info), kResultOk);
    EXPECT_EQ(CComponentRig::narrow(info.name), "Audio In");
    EXPECT_EQ(info.channelCount, 1);
    EXPECT_EQ(rig.processor->canProcessSampleSize(kSample32), kResultOk);
    EXPECT_EQ(rig.processor->canProcessSampleSize(kSample64), kResultOk);
    EXPECT_EQ(rig.processor->canProcessSampleSize(2), kResultFalse);
}

TEST_F(AComponent, RunsAtAllRates)
{
    for (const double rate : {1234.5678, 8000.0, 44100.0, 192000.0, 1234567.8}) {
        SCOPED_TRACE(rate);
        rig.setUp(rate);
        const CComponentRig::CChannels out =
            rig.processAll(CComponentRig::CChannels(2, tone(4000)), 512);
        EXPECT_TRUE(isFinite(out));
        EXPECT_NE(out[0], std::vector<double>(4000, 0.0));
        EXPECT_EQ(rig.processor->getTailSamples(), static_cast<uint32>(std::lround(0.4 * rate)));
    }
    ProcessSetup bad{kRealtime, kSample64, 512, kNotANumber};
    EXPECT_EQ(rig.processor->setupProcessing(bad), kInvalidArgument);
    bad.sampleRate = -1.0;
    EXPECT_EQ(rig.processor->setupProcessing(bad), kInvalidArgument);
}

// Programs

TEST_F(AComponent, ListsItsPrograms)
{
    ProgramListInfo list;
    ASSERT_EQ(rig.units->getProgramListInfo(0, list), kResultOk);
    EXPECT_EQ(list.id, 999);
    EXPECT_EQ(list.programCount, 10);
    std::string names;
    for (int32 i = 0; i < list.programCount; ++i) {
        String128 name;
        ASSERT_EQ(rig.units->getProgramName(999, i, name), kResultOk);
        names += CComponentRig::narrow(name) + ",";
        EXPECT_EQ(rig.textOf(kProgramId, i / 9.0), CComponentRig::narrow(name));
    }
    EXPECT_EQ(names, "Default,Drum Saturator,Smashed Lows,Saturated Highs,Guitar Drive,Medium "
                     "Saturation,Plain Hard Clip,High Sand,Moderate Grit,Replica,");
    String128 name;
    EXPECT_EQ(rig.units->getProgramName(0, 0, name), kResultFalse);
    EXPECT_EQ(rig.units->getProgramName(999, -1, name), kResultFalse);
    EXPECT_EQ(rig.units->getProgramName(999, 10, name), kResultFalse);
    EXPECT_EQ(rig.units->selectUnit(0), kResultOk);
    EXPECT_EQ(rig.units->selectUnit(1), kResultFalse);
}

TEST_F(AComponent, ChangesProgramsAndTellsTheHostOfTheValues)
{
    const std::vector<double> before = rig.values();
    rig.controller->setParamNormalized(kProgramId, 1.0 / 9.0);
    const std::vector<double> after = rig.values();
    EXPECT_NE(after, before);
    int told = 0;
    for (const CHostHandler::CNote& note : rig.handler->takeNotes()) {
        if (note.kind != CHostHandler::EKind::Perform)
            continue;
        EXPECT_NE(note.id, kProgramId) << "the host knows which program it chose";
        EXPECT_EQ(note.value, after[note.id]);
        ++told;
    }
    int changed = 0;
    for (std::size_t i = 0; i < kExtParams; ++i)
        changed += before[i] != after[i];
    EXPECT_EQ(told, changed);
    rig.controller->setParamNormalized(kProgramId, 1.0 / 9.0 + 1e-9);
    EXPECT_TRUE(rig.handler->takeNotes().empty()) << "the current program again";
    rig.controller->setParamNormalized(1, 0.123);
    rig.controller->setParamNormalized(kProgramId, 0.0);
    rig.controller->setParamNormalized(kProgramId, 1.0 / 9.0);
    EXPECT_NEAR(rig.controller->getParamNormalized(1), 0.123, 1e-12)
        << "a program keeps what it was left at";
}

// State

TEST_F(AComponent, GivesBackTheBytesOfItsState)
{
    rig.setUp(48000.0);
    rig.controller->setParamNormalized(1, 0.9);
    rig.controller->setParamNormalized(11, 0.0);
    const std::string saved = rig.getState();
    EXPECT_EQ(saved.substr(0, 4), "aprs");
    EXPECT_EQ(rig.setState(saved), kResultOk);
    EXPECT_EQ(rig.getState(), saved);
    CComponentRig other;
    other.initialize();
    other.setUp(48000.0);
    ASSERT_EQ(other.setState(saved), kResultOk);
    EXPECT_EQ(other.getState(), saved);
    EXPECT_EQ(other.values(), rig.values());
}

TEST_F(AComponent, TellsTheHostOfWhatAStateChangesAndNothingElse)
{
    const std::string saved = rig.getState();
    const std::vector<double> before = rig.values();
    rig.controller->setParamNormalized(1, 0.77); // as the host writes it: it knows
    rig.controller->setParamNormalized(9, 0.11);
    EXPECT_TRUE(rig.handler->takeNotes().empty());
    ASSERT_EQ(rig.setState(saved), kResultOk);
    using CNote = CHostHandler::CNote;
    const std::vector<CNote> notes = rig.handler->takeNotes();
    ASSERT_EQ(notes.size(), 2u);
    for (const CNote& note : notes) {
        EXPECT_EQ(note.kind, CHostHandler::EKind::Perform);
        EXPECT_EQ(note.value, before[note.id]);
    }
    EXPECT_EQ(rig.values(), before);
    ASSERT_EQ(rig.setState(saved), kResultOk);
    EXPECT_TRUE(rig.handler->takeNotes().empty());
}

TEST_F(AComponent, KeepsItsStateWhenTheChunkIsDamaged)
{
    rig.setUp(44100.0);
    rig.controller->setParamNormalized(1, 0.9);
    const std::string saved = rig.getState();
    rig.controller->setParamNormalized(1, 0.3);
    const std::string present = rig.getState();
    for (std::size_t length = 0; length < saved.size(); ++length)
        ASSERT_NE(rig.setState(saved.substr(0, length)), kResultOk) << length;
    EXPECT_EQ(rig.getState(), present);
    for (std::size_t i = 0; i < saved.size(); ++i) {
        std::string damaged = saved;
        damaged[i] = static_cast<char>(damaged[i] ^ 0x55);
        rig.setState(damaged); // what still inflates to a preset may be taken
    }
    EXPECT_NE(rig.component->setState(nullptr), kResultOk);
    EXPECT_NE(rig.component->getState(nullptr), kResultOk);
    ASSERT_EQ(rig.setState(present), kResultOk);
    EXPECT_EQ(rig.getState(), present);
    processSome(2);
}

/// Takes few bytes at once, and none beyond a limit.
class CNarrowStream : public CMemoryStream {
public:
    CNarrowStream(int32 mostAtOnce, std::size_t mostBytes) : step(mostAtOnce), limit(mostBytes) {}
    tresult write(void* buffer, int32 count, int32* written) override
    {
        const auto room = static_cast<int32>(limit - getBytes().size());
        return CMemoryStream::write(buffer, std::min({count, step, room}), written);
    }

private:
    int32 step;
    std::size_t limit;
};

TEST_F(AComponent, SavesAllOfItsStateOrSaysThatItDoesNot)
{
    const std::string saved = rig.getState();
    for (const int32 step : {1, 3, 64}) {
        CNarrowStream stream(step, saved.size());
        EXPECT_EQ(rig.component->getState(&stream), kResultOk);
        EXPECT_EQ(stream.getBytes(), saved);
    }
    for (const std::size_t limit : {std::size_t{0}, std::size_t{3}, saved.size() - 1}) {
        CNarrowStream stream(64, limit);
        EXPECT_NE(rig.component->getState(&stream), kResultOk) << limit;
    }
}

// Odd hosts

TEST(AnOddHost, MayProcessAtAnyTime)
{
    CComponentRig rig;
    CComponentRig::CChannels block(2, tone(64));
    EXPECT_NE(rig.process(block), kResultOk) << "before initialize";
    EXPECT_EQ(rig.processor->getLatencySamples(), 0u);
    rig.initialize();
    EXPECT_EQ(rig.process(block), kResultOk) << "before any set-up";
    EXPECT_TRUE(isFinite(block));
    rig.setUp(44100.0);
    CComponentRig::CChannels none(2);
    EXPECT_EQ(rig.process(none), kResultOk) << "no samples";
    for (const std::size_t count : {1u, 6u, 2u, 0u, 40u, 2u}) {
        CComponentRig::CChannels others(count, tone(700));
        EXPECT_EQ(rig.process(others), kResultOk) << count << " channels";
        EXPECT_TRUE(isFinite(others));
    }
    ProcessSetup setup{kOffline, kSample64, 1, 96000.0};
    EXPECT_EQ(rig.processor->setupProcessing(setup), kResultOk) << "while active";
    EXPECT_EQ(rig.processor->setupProcessing(setup), kResultOk) << "and again";
    rig.processor->setProcessing(false);
    rig.processor->setProcessing(false);
    EXPECT_EQ(rig.process(block), kResultOk) << "while stopped";
    rig.component->terminate();
    EXPECT_NE(rig.process(block), kResultOk) << "behind the end";
}

TEST(AnOddHost, MayGiveNoBuffers)
{
    CComponentRig rig;
    rig.initialize();
    rig.setUp(44100.0);
    std::vector<double> left = tone(256);
    double* pointers[2] = {left.data(), nullptr};
    AudioBusBuffers bus = {};
    bus.numChannels = 2;
    bus.channelBuffers64 = pointers;
    AudioBusBuffers noBuffers = {};
    noBuffers.numChannels = 2;
    ProcessData data = {};
    data.symbolicSampleSize = kSample64;
    data.numSamples = 256;
    data.numInputs = data.numOutputs = 1;
    for (AudioBusBuffers* in : {&bus, &noBuffers, static_cast<AudioBusBuffers*>(nullptr)})
        for (AudioBusBuffers* out : {&bus, &noBuffers, static_cast<AudioBusBuffers*>(nullptr)}) {
            data.inputs = in;
            data.outputs = out;
            EXPECT_EQ(rig.processor->process(data), kResultOk);
        }
    bus.numChannels = -5;
    data.inputs = data.outputs = &bus;
    EXPECT_EQ(rig.processor->process(data), kResultOk);
    data.numSamples = -1;
    EXPECT_EQ(rig.processor->process(data), kInvalidArgument);
    data.numSamples = 256;
    data.symbolicSampleSize = 7;
    EXPECT_EQ(rig.processor->process(data), kInvalidArgument);
}

TEST(AnOddHost, CannotPoisonTheSound)
{
    CComponentRig rig;
    rig.initialize();
    rig.setUp(44100.0);
    CComponentRig::CChannels bad(2, tone(512));
    bad[0][100] = kNotANumber;
    bad[1][200] = kInfinity;
    bad[1][201] = 1e300;
    EXPECT_EQ(rig.process(bad), kResultOk);
    EXPECT_TRUE(isFinite(bad));
    for (int i = 0; i < 100; ++i) {
        CComponentRig::CChannels block(2, tone(512));
        rig.process(block);
        ASSERT_TRUE(isFinite(block));
        if (i == 99) {
            EXPECT_GT(std::abs(block[0][31]), 1e-3);
        }
    }
}

TEST_F(AComponent, TakesChangesWithoutSound)
{
    rig.setUp(44100.0);
    ProcessData flush = {};
    flush.symbolicSampleSize = kSample64;
    flush.inputParameterChanges = rig.changes.get();
    rig.changes->add(1, 0, 0.875);
    EXPECT_EQ(rig.processor->process(flush), kResultOk);
    rig.changes->clear();
    // At once: what is loaded behind it must not be overrun by the next block.
    EXPECT_EQ(rig.controller->getParamNormalized(1), 0.875);
    const std::string saved = rig.getState();
    rig.changes->add(1, 0, 0.25);
    EXPECT_EQ(rig.processor->process(flush), kResultOk);
    rig.changes->clear();
    ASSERT_EQ(rig.setState(saved), kResultOk);
    processSome(1);
    EXPECT_EQ(rig.controller->getParamNormalized(1), 0.875);
}

TEST_F(AComponent, KeepsTheTracksName)
{
    const auto listener = queryAs<ChannelContext::IInfoListener>(rig.component.get());
    const auto attributes = IPtr<CHostAttributes>::owned(new CHostAttributes);
    EXPECT_EQ(listener->setChannelContextInfos(nullptr), kResultOk);
    EXPECT_EQ(listener->setChannelContextInfos(attributes.get()), kResultOk);
    attributes->setString(ChannelContext::kChannelNameKey, u"Gitarre \u00e4\u4e2d");
    EXPECT_EQ(listener->setChannelContextInfos(attributes.get()), kResultOk);
}

} // namespace

} // namespace tsm::test
