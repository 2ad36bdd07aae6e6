#include "Audio/VST/CPluginFactory.h"

#include "Audio/VST/CPluginModule.h"
#include "Audio/VST/EditorView.h"
#include "Audio/VST/VstText.h"
#include "Tests/Audio/VST/CTestEffect.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace tsm {
namespace {

using namespace Steinberg;
using namespace Steinberg::Vst;

class APluginFactory : public testing::Test {
protected:
    APluginFactory()
    {
        PFactoryInfo info = {};
        copyText<char8>("Vendor", info.vendor);
        factory = IPtr<CPluginFactory>::owned(new CPluginFactory(info));
        enter(1, [](void*) -> FUnknown* { return static_cast<IComponent*>(new CTestEffect); });
        enter(2, [](void*) -> FUnknown* { throw std::runtime_error("no"); });
        enter(3, [](void*) -> FUnknown* { return nullptr; });
    }

    static CInterfaceId idOf(uint32 number) { return {0, 0, 0, number}; }
    void enter(uint32 number, CPluginFactory::CreateFunction create) const
    {
        PClassInfo2 info = {};
        copyId(idOf(number), info.cid);
        copyText<char8>("Class \xe9", info.name);
        factory->registerClass(info, create);
    }

    IPtr<CPluginFactory> factory;
};

TEST_F(APluginFactory, DescribesItsClassesInAllForms)
{
    EXPECT_EQ(factory->countClasses(), 3);
    PFactoryInfo maker = {};
    EXPECT_EQ(factory->getFactoryInfo(&maker), kResultOk);
    EXPECT_EQ(maker.flags, PFactoryInfo::kUnicode);
    EXPECT_EQ(factory->getFactoryInfo(nullptr), kResultOk);
    PClassInfo first = {};
    PClassInfo2 second = {};
    PClassInfoW third = {};
    EXPECT_EQ(factory->getClassInfo(1, &first), kResultOk);
    EXPECT_EQ(factory->getClassInfo2(1, &second), kResultOk);
    EXPECT_EQ(factory->getClassInfoUnicode(1, &third), kResultOk);
    EXPECT_TRUE(isSameId(first.cid, idOf(2)));
    EXPECT_TRUE(isSameId(third.cid, idOf(2)));
    EXPECT_EQ(fieldText(third.name), u"Class \u00e9");
    for (const int32 index : {-1, 3}) {
        EXPECT_EQ(factory->getClassInfo(index, &first), kInvalidArgument);
        EXPECT_EQ(factory->getClassInfo2(index, &second), kInvalidArgument);
        EXPECT_EQ(factory->getClassInfoUnicode(index, &third), kInvalidArgument);
    }
    EXPECT_EQ(factory->getClassInfo(0, nullptr), kInvalidArgument);
}

TEST_F(APluginFactory, MakesObjectsAndSurvivesThoseThatFail)
{
    struct CRow {
        const char8* cid;
        const char8* iid;
        tresult result;
    };
    const CInterfaceId effect = idOf(1);
    const CInterfaceId thrower = idOf(2);
    const CInterfaceId nothing = idOf(3);
    const CInterfaceId unknown = idOf(4);
    for (const CRow& row :
         {CRow{effect, IAudioProcessor::iid, kResultOk}, CRow{effect, IPlugView::iid, kNoInterface},
          CRow{unknown, IComponent::iid, kNoInterface},
          CRow{nullptr, IComponent::iid, kNoInterface}, CRow{effect, nullptr, kNoInterface},
          CRow{thrower, IComponent::iid, kOutOfMemory},
          CRow{nothing, IComponent::iid, kOutOfMemory}}) {
        void* made = this;
        EXPECT_EQ(factory->createInstance(row.cid, row.iid, &made), row.result);
        EXPECT_EQ(made != nullptr, row.result == kResultOk);
        if (made) {
            EXPECT_EQ(static_cast<FUnknown*>(made)->release(), 0U);
        }
    }
    EXPECT_EQ(factory->createInstance(effect, IComponent::iid, nullptr), kInvalidArgument);
}

int beginCount = 0;
int endCount = 0;
bool mayBegin = true;

TEST(APluginModule, LivesFromTheFirstEntryToTheLastExit)
{
    beginCount = 0;
    endCount = 0;
    CPluginModule module({[](void*) {
                              ++beginCount;
                              return mayBegin;
                          },
                          [] {
                              ++endCount;
                              return true;
                          },
                          []() -> IPluginFactory* { return new CPluginFactory(PFactoryInfo{}); }});
    EXPECT_FALSE(module.exit());
    mayBegin = false;
    EXPECT_FALSE(module.enter(nullptr));
    mayBegin = true;
    EXPECT_TRUE(module.enter(nullptr));
    EXPECT_TRUE(module.enter(nullptr));
    EXPECT_EQ(beginCount, 2); // the refused one and the first
    IPluginFactory* const factory = module.getFactory();
    EXPECT_EQ(module.getFactory(), factory);
    // Seen of hosts: one reference more is dropped than was taken, or one less.
    EXPECT_EQ(factory->release(), 2U);
    EXPECT_EQ(factory->release(), 1U);
    EXPECT_TRUE(module.exit());
    EXPECT_EQ(endCount, 0);
    EXPECT_EQ(module.getFactory(), factory);
    EXPECT_EQ(factory->release(), 1U);
    EXPECT_TRUE(module.exit());
    EXPECT_EQ(endCount, 1);
    EXPECT_FALSE(module.exit());
    EXPECT_TRUE(module.enter(nullptr)); // and once more
    EXPECT_EQ(beginCount, 3);
    EXPECT_TRUE(module.exit());
}

TEST(AnEditorView, HoldsItsControllerAndTellsItOfItsWindow)
{
    class CWatcher : public SingleComponentEffect {
    public:
        void editorAttached(EditorView*) override { story += "attached "; }
        void editorRemoved(EditorView*) override { story += "removed "; }
        void editorDestroyed(EditorView*) override { story += "destroyed "; }
        std::string story;
    };
    const auto watcher = IPtr<CWatcher>::owned(new CWatcher);
    auto view = IPtr<EditorView>::owned(new EditorView(watcher.get(), {0, 0, 900, 179}));
    ViewRect size;
    EXPECT_EQ(view->getSize(&size), kResultTrue);
    EXPECT_EQ(size.getWidth(), 900);
    EXPECT_EQ(view->getSize(nullptr), kInvalidArgument);
    EXPECT_EQ(view->onSize(nullptr), kResultTrue);
    ViewRect smaller{0, 0, 600, 120};
    EXPECT_EQ(view->onSize(&smaller), kResultTrue);
    EXPECT_EQ(view->getRect().getHeight(), 120);
    EXPECT_EQ(view->attached(&size, kPlatformTypeX11EmbedWindowID), kResultOk);
    EXPECT_EQ(view->removed(), kResultOk);
    view.reset();
    EXPECT_EQ(watcher->story, "attached removed destroyed ");
    watcher->addRef();
    EXPECT_EQ(watcher->release(), 1U);
}

} // namespace
} // namespace tsm
