#include "Tests/Support/CRegistryTree.h"

#include <atomic>
#include <thread>

namespace tsm {
namespace {

constexpr int kRounds = 400;

/// Host, window and audio thread at one instance at a time.
class AudioRegistryThreads : public ARegistryTree {
protected:
    void userEdit(CAudioParam& target, double value)
    {
        CPtr<CAudioParamUndoData> step(new CAudioParamUndoData("edit"));
        CAudioParamContext context;
        context.undo = step.get();
        {
            const CAudioParamLock lock(target);
            CAudioParamRegistry::noteUserEdit(target, 0, &context);
            target.setValue(0, 0, value, nullptr, &context);
        }
        undo->commit(std::move(step));
    }
};

TEST_F(AudioRegistryThreads, WorkBesideEachOther)
{
    makeRegistry();
    CByteList bank;
    bank.text("").u32(2);
    for (const auto& preset : {presetBytes("test:A", {{"gain", 1}, {"mode", 1}}),
                               presetBytes("test:B", {{"gain", 2}, {"mode", 2}})})
        bank.bytes.insert(bank.bytes.end(), preset.begin(), preset.end());
    CMemoryReader reader(bank.bytes.data(), static_cast<int>(bank.bytes.size()));
    ASSERT_OK(registry->loadBank(reader, nullptr));

    setProcessing(true);
    std::atomic<bool> isDone = false;
    std::thread audio([&] {
        while (!isDone.load())
            takeChanges();
    });
    const auto preset = presetBytes("test:P", {{"gain", 7}, {"mode", 7}});
    std::thread host([&] {
        for (int i = 0; i < kRounds; ++i) {
            registry->selectProgram(i % 2, this);
            const auto saved = state();
            EXPECT_OK(activate(saved, false, -1, true));
        }
    });
    std::thread window([&] {
        for (int i = 0; i < kRounds; ++i) {
            userEdit(*gain, i % 100);
            EXPECT_OK(activate(preset));
            undo->setPosition(i % 3, true);
            registry->exchangeShadowPreset();
            registry->renameProgram(i % 2, "Name", nullptr);
            COwnedArray<CString> names;
            int current = 0;
            registry->getPresetNames(false, names, current);
            EXPECT_EQ(names.getCount(), 2);
        }
    });
    host.join();
    window.join();
    isDone = true;
    audio.join();
    takeChanges();
    EXPECT_EQ(gain->getProcessValues().value(0, 0), gain->value(0, 0));
    EXPECT_EQ(mode->getProcessValues().value(0, 0), mode->value(0, 0));
    EXPECT_EQ(presetName->getProcessValues().text(0, 0), presetName->text(0, 0));
}

} // namespace
} // namespace tsm
