#pragma once

#include "Audio/CAudioModule.h"
#include "Audio/CAudioParamSubscription.h"
#include "Audio/CAudioProcessBase.h"
#include "Audio/CCosineFade.h"

namespace tsm {

/// A process that works by modules: it holds the graph's side (channels, parameters, crossfades),
/// they hold the signal code. See `CAudioProcessTerminal` for the class to derive from.
class CAudioProcessTerminalBase : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void reset() override;
    void update() override;
    void process() override;

    /// The parameter slot of an index, or null.
    [[nodiscard]] const CAudioParamStorage* findSlotValues(int index) const noexcept;
    /// Modules that run now, fading ones included; for tests.
    [[nodiscard]] int getActiveCount() const noexcept { return activeModules.getCount(); }

protected:
    /// A new module of the terminal's class.
    [[nodiscard]] virtual CAudioModule* createModule() const = 0;
    /// Runs the signal code of modules of that class.
    virtual void processModules(CAudioModule* const* modules, int count) = 0;

    [[nodiscard]] bool needsUpdates() const override { return fadingCount > 0; }
    void setAllParamsDirty(bool isDirty) override;

private:
    /// A parameter of the definition that modules may use.
    struct CSlot : CTsmMemAllocator {
        int index = 0;
        std::uint32_t dirtyGroups = 0;
        bool isSmooth = false;
        bool useAllGroups = false;
        CAudioParam* param = nullptr;
        CAudioParamSubscriptionPtr subscription;
    };
    /// One channel's module, and the one that it is being faded from.
    struct CRecord : CTsmMemAllocator {
        CPtr<CAudioModule> current;
        CPtr<CAudioModule> previous;
        bool isFading = false;
        bool isChangePending = false; // another change came during the fade
        int waitSamples = 0;          // until the new module's signal has come through its delay
        int fadeSamples = 0;
        CCosineFade fades[kMaxPortChannels];
    };

    [[nodiscard]] CError* makeSlots();
    void updateFormat();
    void updateParams();
    void fitRecords();
    void fitRecord(CRecord& record, const CAudioChannel* const* channels, int count);
    [[nodiscard]] CPtr<CAudioModule> takeModule();
    void retire(CPtr<CAudioModule>& module);
    void setUpModule(CAudioModule& module) const;
    static void flagParams(CAudioModule& module, bool isChanged);
    static void runUpdate(CAudioModule& module);
    static void markDirty(CAudioModule& module, const CSlot& slot);
    void changeModule(CRecord& record);
    [[nodiscard]] bool startSwitch(CRecord& record);
    void startFade(CRecord& record) const;
    void finishFades();
    void endFades();
    void rebuildActive();
    void publishOutputs();
    void mixFade(CRecord& record);
    void mixChannel(CRecord& record, int channel);

    COwnedArray<CSlot> slots; // by index; gaps have no parameter
    COwnedArray<CRecord> records;
    COwnedArray<CAudioModule> freeModules;
    CArray<CAudioModule*, kMaxPortChannels> activeModules;
    CArray<CAudioBlockRef*, kMaxPortChannels> outputs; // of the current modules, in channel order
    int fadingCount = 0;
    double xfadeLength = 0.015; // seconds
    int xfadeSamples = 1;
    bool isSmoothDefinition = false;
};

} // namespace tsm
