#include "Tests/Audio/VST/CTestEffect.h"
#include "Tools/hostlib/CHostContext.h"
#include "Tools/hostlib/CHostHandler.h"
#include "Tools/hostlib/CHostMessage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <set>

namespace tsm {
namespace {

using namespace Steinberg;
using namespace Steinberg::Vst;
using testing::ElementsAre;

/// The helper class with two buses, one event bus and two parameters, nothing else of its own.
class CPlainEffect : public SingleComponentEffect {
public:
    tresult initialize(FUnknown* context) override
    {
        const tresult result = SingleComponentEffect::initialize(context);
        if (result != kResultOk)
            return result;
        addAudioInput(u"In", SpeakerArr::kStereo);
        addAudioOutput(u"Out", SpeakerArr::kStereo);
        addEventInput(u"Events", 4);
        ParameterInfo info = {};
        info.id = 5;
        info.defaultNormalizedValue = 0.25;
        parameters.addParameter(info);
        info.id = 6;
        info.stepCount = 1;
        parameters.addParameter(info);
        return kResultOk;
    }
};

class ASingleComponentEffect : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(effect->initialize(context->asUnknown()), kResultOk); }

    [[nodiscard]] uint32 countOf(FObject& object) const
    {
        object.addRef();
        return object.release();
    }
    [[nodiscard]] std::u16string textOf(ParamID id, double value) const
    {
        String128 text = {};
        effect->getParamStringByValue(id, value, text);
        return text;
    }

    IPtr<CHostContext> context = IPtr<CHostContext>::owned(new CHostContext);
    IPtr<CHostHandler> handler = IPtr<CHostHandler>::owned(new CHostHandler);
    IPtr<CPlainEffect> effect = IPtr<CPlainEffect>::owned(new CPlainEffect);
};

TEST_F(ASingleComponentEffect, IsOneObjectBehindDistinctInterfaces)
{
    const auto unknown = queryAs<FUnknown>(static_cast<IComponent*>(effect.get()));
    std::set<void*> addresses;
    const auto visit = [&]<class Interface>(Interface*) {
        const auto found = queryAs<Interface>(unknown.get());
        ASSERT_TRUE(found);
        addresses.insert(found.get());
        EXPECT_EQ(queryAs<FUnknown>(found.get()).get(), unknown.get());
        EXPECT_TRUE(queryAs<IComponent>(found.get()));
    };
    visit(static_cast<IPluginBase*>(nullptr));
    visit(static_cast<IComponent*>(nullptr));
    visit(static_cast<IAudioProcessor*>(nullptr));
    visit(static_cast<IEditController*>(nullptr));
    visit(static_cast<IEditController2*>(nullptr));
    EXPECT_EQ(addresses.size(), 5U);
}

TEST_F(ASingleComponentEffect, HidesWhatAHostWouldMisuse)
{
    for (const char8* hidden : {static_cast<const char8*>(IConnectionPoint::iid),
                                static_cast<const char8*>(IProcessContextRequirements::iid),
                                static_cast<const char8*>(IUnitInfo::iid)}) {
        void* found = &context;
        EXPECT_EQ(effect->queryInterface(hidden, &found), kNoInterface);
        EXPECT_EQ(found, nullptr);
    }
    void* found = &context;
    EXPECT_EQ(effect->queryInterface(nullptr, &found), kNoInterface);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(effect->queryInterface(IComponent::iid, nullptr), kInvalidArgument);
}

TEST_F(ASingleComponentEffect, BeginsAndEndsThroughAnyInterfaceOnce)
{
    // Hosts call these on component and controller alike.
    IComponent& component = *effect;
    IEditController& controller = *effect;
    EXPECT_EQ(controller.initialize(context->asUnknown()), kResultFalse);
    EXPECT_EQ(component.getBusCount(kAudio, kInput), 1);
    EXPECT_EQ(countOf(*context), 2U);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(controller.terminate(), kResultOk);
        EXPECT_EQ(component.getBusCount(kAudio, kInput), 0);
        EXPECT_EQ(controller.getParameterCount(), 0);
        EXPECT_EQ(countOf(*context), 1U);
    }
    // Without a context it can't tell by that whether it has begun.
    EXPECT_EQ(component.initialize(nullptr), kResultOk);
    EXPECT_EQ(component.initialize(nullptr), kResultFalse);
    EXPECT_EQ(controller.getParameterCount(), 2);
}

TEST_F(ASingleComponentEffect, KeepsStatesOfComponentAndControllerApart)
{
    class CStates : public CPlainEffect {
    public:
        tresult setState(IBStream*) override { return kResultOk; }
        tresult getState(IBStream*) override { return kInternalError; }
    };
    const auto states = IPtr<CStates>::owned(new CStates);
    // As a host sees them: both interfaces call these setState and getState.
    const auto call = [](auto* object, int slot) {
        void** const table = *reinterpret_cast<void***>(object);
        return reinterpret_cast<tresult (*)(void*, IBStream*)>(table[slot])(object, nullptr);
    };
    IComponent* const component = states.get();
    IEditController* const controller = states.get();
    EXPECT_EQ(call(component, 12), kResultOk);
    EXPECT_EQ(call(component, 13), kInternalError);
    for (const int slot : {5, 6, 7})
        EXPECT_EQ(call(controller, slot), kNotImplemented) << slot;
}

TEST_F(ASingleComponentEffect, AnswersForBusesThatExistAndThatDoNot)
{
    struct CRow {
        MediaType type;
        BusDirection dir;
        int32 count;
        int32 channels;
    };
    for (const CRow& row :
         {CRow{kAudio, kInput, 1, 2}, CRow{kAudio, kOutput, 1, 2}, CRow{kAudio, 77, 1, 2},
          CRow{kEvent, kInput, 1, 4}, CRow{kEvent, kOutput, 0, 0}, CRow{2, kInput, 0, 0},
          CRow{-1, kOutput, 0, 0}}) {
        SCOPED_TRACE(testing::Message() << row.type << " " << row.dir);
        EXPECT_EQ(effect->getBusCount(row.type, row.dir), row.count);
        BusInfo first;
        BusInfo second;
        std::memset(&first, 0x55, sizeof first);
        std::memset(&second, 0xaa, sizeof second);
        const tresult wanted = row.count > 0 ? kResultTrue : kInvalidArgument;
        EXPECT_EQ(effect->getBusInfo(row.type, row.dir, 0, first), wanted);
        EXPECT_EQ(effect->activateBus(row.type, row.dir, 0, 1), wanted);
        if (row.count > 0) {
            effect->getBusInfo(row.type, row.dir, 0, second);
            EXPECT_EQ(std::memcmp(&first, &second, sizeof first), 0) << "bytes left unwritten";
            EXPECT_EQ(first.channelCount, row.channels);
        }
        for (const int32 index : {-1, row.count, std::numeric_limits<int32>::max(),
                                  std::numeric_limits<int32>::min()}) {
            EXPECT_EQ(effect->getBusInfo(row.type, row.dir, index, first), kInvalidArgument);
            EXPECT_EQ(effect->activateBus(row.type, row.dir, index, 1), kInvalidArgument);
        }
    }
}

TEST_F(ASingleComponentEffect, TakesArrangementsOfTheFirstBuses)
{
    SpeakerArrangement mono = SpeakerArr::kMono;
    SpeakerArrangement read = 0;
    EXPECT_EQ(effect->setBusArrangements(&mono, 1, nullptr, 0), kResultTrue);
    EXPECT_EQ(effect->getBusArrangement(kInput, 0, read), kResultTrue);
    EXPECT_EQ(read, SpeakerArr::kMono);
    EXPECT_EQ(effect->getBusArrangement(kOutput, 0, read), kResultTrue);
    EXPECT_EQ(read, SpeakerArr::kStereo);
    EXPECT_EQ(effect->getBusArrangement(kOutput, 1, read), kInvalidArgument);
    EXPECT_EQ(effect->getBusArrangement(kOutput, -1, read), kInvalidArgument);
    EXPECT_EQ(effect->setBusArrangements(&mono, -1, &mono, 1), kInvalidArgument);
    EXPECT_EQ(effect->setBusArrangements(nullptr, 1, &mono, 1), kInvalidArgument);
    SpeakerArrangement two[2] = {};
    EXPECT_EQ(effect->setBusArrangements(two, 2, two, 1), kResultFalse);
}

TEST_F(ASingleComponentEffect, RefusesOtherSampleSizesThanItSays)
{
    ProcessSetup setup{kRealtime, kSample64, 64, 48000.0};
    EXPECT_EQ(effect->setupProcessing(setup), kResultFalse);
    setup.symbolicSampleSize = kSample32;
    EXPECT_EQ(effect->setupProcessing(setup), kResultOk);
    ProcessData data = {};
    EXPECT_EQ(effect->process(data), kNotImplemented);
}

TEST_F(ASingleComponentEffect, AnswersForParametersThatExistAndThatDoNot)
{
    EXPECT_EQ(effect->getParameterCount(), 2);
    ParameterInfo info = {};
    EXPECT_EQ(effect->getParameterInfo(1, info), kResultTrue);
    EXPECT_EQ(info.id, 6U);
    for (const int32 index : {-1, 2, std::numeric_limits<int32>::max()})
        EXPECT_EQ(effect->getParameterInfo(index, info), kResultFalse);

    EXPECT_EQ(effect->getParamNormalized(5), 0.25);
    EXPECT_EQ(effect->setParamNormalized(5, 0.25), kResultTrue);
    struct CRow {
        double given;
        double kept;
    };
    for (const CRow& row : {CRow{0.5, 0.5}, CRow{1.5, 1.0}, CRow{-1.0, 0.0},
                            CRow{std::numeric_limits<double>::infinity(), 1.0},
                            CRow{std::nan(""), 1.0}}) { // no number changes nothing
        EXPECT_EQ(effect->setParamNormalized(5, row.given), kResultTrue);
        EXPECT_EQ(effect->getParamNormalized(5), row.kept);
    }

    EXPECT_EQ(textOf(5, 0.25), u"0.2500");
    EXPECT_EQ(textOf(6, 0.5), u"Off");
    EXPECT_EQ(textOf(6, 0.51), u"On");
    TChar number[] = u" 0.75";
    TChar word[] = u"loud";
    double value = 0.5;
    EXPECT_EQ(effect->getParamValueByString(5, number, value), kResultTrue);
    EXPECT_EQ(value, 0.75);
    EXPECT_EQ(effect->getParamValueByString(5, word, value), kResultFalse);
    EXPECT_EQ(effect->getParamValueByString(5, nullptr, value), kInvalidArgument);
    EXPECT_EQ(effect->getParamStringByValue(5, 0.5, nullptr), kInvalidArgument);

    String128 text = {};
    EXPECT_EQ(effect->getParamStringByValue(kNoParamId, 0.5, text), kResultFalse);
    EXPECT_EQ(effect->getParamValueByString(kNoParamId, number, value), kResultFalse);
    EXPECT_EQ(effect->setParamNormalized(kNoParamId, 0.5), kResultFalse);
    EXPECT_EQ(effect->getParamNormalized(kNoParamId), 0.0);
    EXPECT_EQ(effect->normalizedParamToPlain(kNoParamId, 7.0), 7.0);
    EXPECT_EQ(effect->plainParamToNormalized(kNoParamId, 7.0), 7.0);
}

TEST_F(ASingleComponentEffect, HandsEditsToTheHandlerWhileItHasOne)
{
    using CNote = CHostHandler::CNote;
    using EKind = CHostHandler::EKind;
    EXPECT_EQ(effect->performEdit(5, 0.5), kResultFalse);
    EXPECT_EQ(effect->setDirty(1), kNotImplemented);
    for (int i = 0; i < 2; ++i) // the same one again changes nothing
        EXPECT_EQ(effect->setComponentHandler(handler.get()), kResultTrue);
    EXPECT_EQ(countOf(*handler), 3U); // as handler and as its second interface
    EXPECT_EQ(effect->beginEdit(5), kResultOk);
    EXPECT_EQ(effect->performEdit(5, 0.5), kResultOk);
    EXPECT_EQ(effect->endEdit(5), kResultOk);
    EXPECT_EQ(effect->setDirty(1), kResultOk);
    EXPECT_THAT(handler->takeNotes(),
                ElementsAre(CNote{EKind::Begin, 5, 0.0}, CNote{EKind::Perform, 5, 0.5},
                            CNote{EKind::End, 5, 0.0}));
    EXPECT_EQ(effect->terminate(), kResultOk);
    EXPECT_EQ(countOf(*handler), 1U);
    EXPECT_EQ(effect->performEdit(5, 0.5), kResultFalse);
}

TEST(AComponentBase, SendsTextsToItsPeer)
{
    class CListener : public ComponentBase {
    public:
        TSM_VST_REFCOUNT(ComponentBase)
        tresult receiveText(const TChar* text) override
        {
            heard = text;
            return kResultOk;
        }
        std::u16string heard;
    };
    const auto context = IPtr<CHostContext>::owned(new CHostContext);
    const auto speaker = IPtr<CListener>::owned(new CListener);
    const auto listener = IPtr<CListener>::owned(new CListener);
    speaker->initialize(context->asUnknown());
    EXPECT_EQ(speaker->sendTextMessage(u"nobody"), kResultFalse);
    EXPECT_EQ(speaker->connect(nullptr), kInvalidArgument);
    EXPECT_EQ(speaker->connect(listener.get()), kResultOk);
    EXPECT_EQ(speaker->connect(listener.get()), kResultFalse);
    EXPECT_EQ(speaker->sendTextMessage(u"hello"), kResultOk);
    EXPECT_EQ(listener->heard, u"hello");
    // A text beyond the room is cut, and it ends.
    EXPECT_EQ(speaker->sendTextMessage(std::u16string(1000, u'x').c_str()), kResultOk);
    EXPECT_EQ(listener->heard, std::u16string(255, u'x'));

    const auto other = IPtr<CHostMessage>::owned(new CHostMessage);
    other->setMessageID("Other");
    EXPECT_EQ(listener->notify(other.get()), kResultFalse);
    EXPECT_EQ(listener->notify(nullptr), kInvalidArgument);
    EXPECT_EQ(speaker->disconnect(speaker.get()), kResultFalse);
    EXPECT_EQ(speaker->disconnect(listener.get()), kResultOk);
}

} // namespace
} // namespace tsm
