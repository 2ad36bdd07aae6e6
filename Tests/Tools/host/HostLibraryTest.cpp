#include "Core/CPtr.h"
#include "Tests/Support/CScratchFolder.h"
#include "Tools/hostlib/CHostAttributes.h"
#include "Tools/hostlib/CHostContext.h"
#include "Tools/hostlib/CHostParamChanges.h"
#include "Tools/hostlib/CMemoryStream.h"
#include "Tools/hostlib/CVstInstance.h"
#include "Tools/hostlib/CVstPresetFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace tsm {
namespace {

using namespace Steinberg;
using namespace Steinberg::Vst;
using testing::HasSubstr;

std::string messageOf(CError* error)
{
    const CPtr<CError> owned(error);
    return owned ? owned->getMessage().toUtf8() : "";
}

TEST(AMemoryStream, ReadsAndWritesWithinItsBytes)
{
    const auto stream = IPtr<CMemoryStream>::owned(new CMemoryStream);
    char text[] = "abcdef";
    int32 count = 0;
    int64 place = 0;
    EXPECT_EQ(stream->write(text, 6, &count), kResultOk);
    EXPECT_EQ(count, 6);
    EXPECT_EQ(stream->seek(-2, IBStream::kIBSeekEnd, &place), kResultOk);
    EXPECT_EQ(place, 4);
    char back[8] = {};
    EXPECT_EQ(stream->read(back, 8, &count), kResultOk);
    EXPECT_EQ(count, 2);
    EXPECT_STREQ(back, "ef");
    // A gap reads as zeros; counts may be null.
    EXPECT_EQ(stream->seek(2, IBStream::kIBSeekCur, nullptr), kResultOk);
    EXPECT_EQ(stream->read(back, 1, &count), kResultOk);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(stream->write(text, 1, nullptr), kResultOk);
    EXPECT_EQ(stream->getBytes(), std::string("abcdef\0\0a", 9));
    for (const int64 bad : {int64{-10}, CMemoryStream::kMaxSize, std::numeric_limits<int64>::max(),
                            std::numeric_limits<int64>::min()})
        EXPECT_EQ(stream->seek(bad, IBStream::kIBSeekCur, nullptr), kInvalidArgument);
    EXPECT_EQ(stream->seek(0, 3, nullptr), kInvalidArgument);
    EXPECT_EQ(stream->read(nullptr, 1, nullptr), kInvalidArgument);
    EXPECT_EQ(stream->write(text, -1, nullptr), kInvalidArgument);
    EXPECT_EQ(stream->tell(&place), kResultOk);
    EXPECT_EQ(place, 9);
}

TEST(HostAttributes, KeepValuesByTypeAndCutTexts)
{
    const auto list = IPtr<CHostAttributes>::owned(new CHostAttributes);
    int64 number = 0;
    TChar text[5] = {u'#', u'#', u'#', u'#', u'#'};
    EXPECT_EQ(list->setString("name", u"abcd"), kResultOk);
    EXPECT_EQ(list->getInt("name", number), kResultFalse);
    EXPECT_EQ(list->getString("absent", text, sizeof text), kResultFalse);
    EXPECT_EQ(list->getString("name", text, 3 * sizeof(TChar)), kResultOk);
    EXPECT_EQ(std::u16string_view(text, 5), u"abc##");
    EXPECT_EQ(list->getString("name", text, sizeof text), kResultOk);
    EXPECT_EQ(std::u16string_view(text, 5), std::u16string_view(u"abcd\0", 5));
    EXPECT_EQ(list->setInt(nullptr, 1), kInvalidArgument);
}

TEST(HostParamChanges, KeepPointsInOrderAndQueuesForReuse)
{
    const auto changes = IPtr<CHostParamChanges>::owned(new CHostParamChanges);
    for (int round = 0; round < 2; ++round) {
        changes->add(7, 20, 0.2);
        changes->add(7, 10, 0.1);
        changes->add(9, 0, 0.9);
        changes->add(7, 20, 0.3); // in place of the one that is there
        ASSERT_EQ(changes->getParameterCount(), 2);
        IParamValueQueue* const queue = changes->getParameterData(0);
        ASSERT_EQ(queue->getPointCount(), 2);
        int32 offset = 0;
        double value = 0.0;
        EXPECT_EQ(queue->getPoint(1, offset, value), kResultTrue);
        EXPECT_EQ(offset, 20);
        EXPECT_EQ(value, 0.3);
        EXPECT_EQ(queue->getPoint(2, offset, value), kResultFalse);
        EXPECT_EQ(changes->getParameterData(2), nullptr);
        EXPECT_EQ(changes->getParameterData(-1), nullptr);
        changes->clear();
    }
}

TEST(APresetFile, ReadsWhatItWrites)
{
    CVstPresetFile file;
    file.classId[0] = 'x';
    file.componentState = "component";
    file.controllerState = "control";
    CVstPresetFile back;
    EXPECT_EQ(messageOf(CVstPresetFile::parse(file.toBytes(), back)), "");
    EXPECT_EQ(back.componentState, "component");
    EXPECT_EQ(back.controllerState, "control");
    EXPECT_EQ(back.classId[0], 'x');
}

TEST(APresetFile, SurvivesAnyDamage)
{
    CVstPresetFile file;
    file.componentState = "component";
    const std::string whole = file.toBytes();
    CVstPresetFile back;
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_NE(messageOf(CVstPresetFile::parse(std::string_view(whole).substr(0, size), back)),
                  "")
            << size;
    // Whatever a byte becomes: an error, or chunks that lie within the file.
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int value : {0x00, 0x7f, 0x80, 0xff}) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(value);
            if (messageOf(CVstPresetFile::parse(damaged, back)).empty()) {
                EXPECT_LE(back.componentState.size(), whole.size());
            }
        }
}

/// The real bundle of the tests' plug-in, and its instance.
class ABundle : public testing::Test {
protected:
    void open()
    {
        bundle = std::make_unique<CVstBundle>();
        ASSERT_EQ(messageOf(bundle->open(TSM_TEST_BUNDLE, context->asUnknown())), "");
        const CVstClass* effect = nullptr;
        ASSERT_EQ(messageOf(bundle->findEffect(effect)), "");
        instance = std::make_unique<CVstInstance>();
        ASSERT_EQ(messageOf(instance->create(*bundle, *effect, context->asUnknown())), "");
    }

    IPtr<CHostContext> context = IPtr<CHostContext>::owned(new CHostContext);
    std::unique_ptr<CVstBundle> bundle;
    std::unique_ptr<CVstInstance> instance; // goes before the bundle
};

TEST_F(ABundle, LoadsAgainAfterItsEnd)
{
    for (int i = 0; i < 3; ++i) {
        ASSERT_NO_FATAL_FAILURE(open());
        instance.reset();
        bundle.reset();
        context->addRef();
        EXPECT_EQ(context->release(), 1U) << "the plug-in kept the host's object";
    }
}

TEST_F(ABundle, AnswersThroughAPlainTableOfFunctions)
{
    ASSERT_NO_FATAL_FAILURE(open());
    // What a host written in C sees of the controller, with its real types of arguments.
    struct CController;
    struct CTable {
        tresult (*queryInterface)(CController*, const char*, void**);
        uint32 (*addRef)(CController*);
        uint32 (*release)(CController*);
        void* slots3to7[5];
        int32 (*getParameterCount)(CController*);
        void* slots9to13[5];
        double (*getParamNormalized)(CController*, uint32);
        tresult (*setParamNormalized)(CController*, uint32, double);
    };
    struct CController {
        const CTable* table;
    };
    auto* const plain = reinterpret_cast<CController*>(&instance->getController());
    EXPECT_EQ(plain->table->getParameterCount(plain), 3);
    EXPECT_EQ(plain->table->setParamNormalized(plain, 7, 0.375), kResultTrue);
    EXPECT_EQ(plain->table->getParamNormalized(plain, 7), 0.375);
    EXPECT_EQ(plain->table->addRef(plain), plain->table->release(plain) + 1);
}

TEST_F(ABundle, ExportsItsEntryPointsAlone)
{
    const std::string command = "nm -D --defined-only --format=posix '" +
                                CVstBundle::modulePath(TSM_TEST_BUNDLE).string() +
                                "' | cut -d' ' -f1 | sort";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::array<char, 4096> text{};
    const std::size_t count = std::fread(text.data(), 1, text.size(), pipe.get());
    EXPECT_EQ(std::string(text.data(), count), "GetPluginFactory\nModuleEntry\nModuleExit\n");
}

TEST_F(ABundle, TellsTheHostOfAStateThatChangesValues)
{
    using CNote = CHostHandler::CNote;
    using EKind = CHostHandler::EKind;
    ASSERT_NO_FATAL_FAILURE(open());
    instance->getController().setParamNormalized(7, 0.5);
    std::string state;
    ASSERT_EQ(messageOf(instance->getState(state)), "");
    instance->getController().setParamNormalized(7, 0.75);
    EXPECT_THAT(instance->getHandler().takeNotes(), testing::IsEmpty());
    ASSERT_EQ(messageOf(instance->setState(state)), "");
    EXPECT_THAT(instance->getHandler().takeNotes(),
                testing::ElementsAre(CNote{EKind::Begin, 7, 0.0}, CNote{EKind::Perform, 7, 0.5},
                                     CNote{EKind::End, 7, 0.0}));
    EXPECT_THAT(messageOf(instance->setState("damaged")), HasSubstr("refuses the state"));
    EXPECT_EQ(instance->getController().getParamNormalized(7), 0.5);
}

TEST_F(ABundle, HoldsComponentAndControllerThatAreTwoObjects)
{
    ASSERT_NO_FATAL_FAILURE(open());
    const auto& classes = bundle->getClasses();
    const auto split = std::ranges::find_if(
        classes, [](const CVstClass& each) { return each.name == "Test Split"; });
    ASSERT_NE(split, classes.end());
    instance = std::make_unique<CVstInstance>();
    ASSERT_EQ(messageOf(instance->create(*bundle, *split, context->asUnknown())), "");
    // Connected already, so that another peer is refused on both sides.
    for (FUnknown* side : {static_cast<FUnknown*>(&instance->getComponent()),
                           static_cast<FUnknown*>(&instance->getController())}) {
        const auto point = queryAs<IConnectionPoint>(side);
        ASSERT_TRUE(point);
        EXPECT_EQ(point->connect(point.get()), kResultFalse);
    }
    // A state goes to both.
    const double gain = 0.25;
    const std::string state =
        "TGST1" + std::string(reinterpret_cast<const char*>(&gain), sizeof gain);
    ASSERT_EQ(messageOf(instance->setState(state)), "");
    EXPECT_EQ(instance->getController().getParamNormalized(7), gain);
    std::string back;
    ASSERT_EQ(messageOf(instance->getState(back)), "");
    EXPECT_EQ(back, state);
}

TEST_F(ABundle, RefusesWhatIsNoBundle)
{
    const CScratchFolder scratch;
    scratch.write("Text.vst3/Contents/x86_64-linux/Text.so", "no module");
    std::filesystem::create_directories(scratch / "Empty.vst3");
    for (const char* name : {"Absent.vst3", "Empty.vst3", "Text.vst3"})
        EXPECT_THAT(messageOf(CVstBundle().open(scratch / name, nullptr)), HasSubstr(name));
    // A library that is no plug-in.
    std::filesystem::create_directories(scratch / "Other.vst3/Contents/x86_64-linux");
    std::filesystem::create_symlink(TSM_OTHER_LIBRARY,
                                    scratch / "Other.vst3/Contents/x86_64-linux/Other.so");
    EXPECT_THAT(messageOf(CVstBundle().open(scratch / "Other.vst3", nullptr)),
                HasSubstr("exports no ModuleEntry"));
}

} // namespace
} // namespace tsm
