#pragma once

#include "Audio/CAudioParamUndo.h"
#include "Audio/CAudioPresetBank.h"
#include "Audio/CAudioRoutingInfoProvider.h"
#include "Audio/CRegistryMembers.h"
#include "Core/CUpdateNotifier.h"

namespace tsm {

/// A named view of a part of the parameters, with a store of value sets for it. Tag
/// `audio:param-registry`.
///
/// A master registry has a bank of the factory and one of the session, whose presets are the host's
/// programs; another one keeps a list in the application data. One activation is one transaction:
/// the engine sees it at one time, and it is one step of the undo history. Each program has an undo
/// history of its own.
///
/// [control] for all operations unless they say otherwise, never the audio thread. Lock order:
/// banks, members, undo, a parameter's; nobody is told of anything under the first two. What is
/// told goes to CRegistryListener and CProgramChangeListener.
class CAudioParamRegistry : public CObject, public CUpdateNotifier {
public:
    /// What has happened, and the kinds of messages by which it is told.
    enum EUpdate : std::uint64_t {
        kAnyUpdate = 0,     ///< the kind for those who want to hear of all
        kProgramChange = 1, ///< another program is current; as a kind also a program's new name
        kProgramRename = 2, ///< a program has another name
        kActivation = 3,    ///< a preset was applied, or all was reset
    };

    CAudioParamRegistry();
    ~CAudioParamRegistry() override;

    /// Reads attributes and banks; nothing is applied. A bank or list that can't be read is logged
    /// and counts as empty. Errors: no collector or undo object at its path, a bad remap.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }

    /// The registry of an instance by its full name, or null. [any]
    [[nodiscard]] static CAudioParamRegistry* find(const CAudioParamCollector& collector,
                                                   const CString& fullName);
    /// A user edits a value: in that group, the preset's name becomes "User" in every registry
    /// whose presets hold the parameter, within the same step. To be called before the change; the
    /// caller may hold the parameter's lock, and only that one. [any]
    static void noteUserEdit(const CAudioParam& param, std::int32_t group,
                             CAudioParamContext* transaction);

    /// Names who adapts the routing behind each activation; borrowed, null for none. [setup]
    void setRoutingProvider(CAudioRoutingInfoProvider* newProvider) noexcept
    {
        routing = newProvider;
    }
    [[nodiscard]] bool getIsMaster() const noexcept { return isMaster; }
    /// The first part of the names of all presets that fit this registry.
    [[nodiscard]] const CString& getId() const noexcept { return id; }

    // Programs, of a master registry

    [[nodiscard]] int getProgramCount() const;
    [[nodiscard]] int getCurrentProgram() const;
    /// The display name of a session preset. False when there is none of that index.
    [[nodiscard]] bool getProgramName(int index, CString& name) const;
    /// The display names of a bank, and the current index: of a registry that is no master nothing
    /// and -1, as for the index of the factory's.
    void getPresetNames(bool fromFactory, COwnedArray<CString>& names, int& current) const;
    /// Makes a session preset current; the live values go into the slot that is left, and the undo
    /// history changes with it. Nothing happens for the current index and one out of range.
    void selectProgram(int index, const void* sender);
    /// Names a session preset; of the current one the name parameter follows, as one undo step.
    void renameProgram(int index, const CString& displayName, const void* sender);

    // Value sets

    /// Applies the first session preset: what an instance starts with.
    void applyInitial();
    /// Applies a saved preset for all groups (-1) or one; with `partial` what it doesn't name stays
    /// as it is, else it goes to its default, but for what all groups share when one is meant. With
    /// `includePersistent` it is the host's state, which comes back as it was: other presets give
    /// the name parameter their own name, whatever they hold for it. Errors: damaged data, no such
    /// group, or the preset of another registry, with nothing changed; the values of a parameter
    /// are damaged, with those before it applied.
    [[nodiscard]] CError* activatePreset(CInputStream& stream, bool partial, std::int32_t group,
                                         bool includePersistent = false);
    /// Applies a preset of the factory bank. Errors: no such index, as above.
    [[nodiscard]] CError* activateRomPreset(int index);
    /// Applies what a saved preset names to all groups and nothing else, without a step. Errors:
    /// not a master registry, as above.
    [[nodiscard]] CError* setDefaultPreset(CInputStream& stream);
    /// Sets all that presets hold to the defaults, as one undo step; master only.
    void masterReset();

    /// Writes a preset: of the factory bank, of the session (-1: the current one, as it is now), or
    /// of a registry that is no master the values as they are. With a `group` above -1 live values
    /// are those of that group. Errors: no such index, the stream's.
    [[nodiscard]] CError* acquirePreset(bool fromFactory, int index, std::int32_t group,
                                        COutputStream& stream);
    /// Writes a bank. Errors: not a master registry, the stream's.
    [[nodiscard]] CError* acquireBank(bool fromFactory, COutputStream& stream);
    /// Replaces the session bank and applies its first preset. Errors: damaged data, a preset of
    /// another registry, not a master; nothing has changed then.
    [[nodiscard]] CError* loadBank(CInputStream& stream, const void* sender);

    /// The display names of the list that a registry has in the application data.
    void getStoredPresetNames(COwnedArray<CString>& names) const;
    /// Writes a preset of that list. Errors: no such index, the stream's.
    [[nodiscard]] CError* acquireStoredPreset(int index, COutputStream& stream) const;

    /// Makes the live values those that new instances start with, on this machine. Errors: they
    /// could not be stored.
    [[nodiscard]] CError* saveDefaultPreset();
    void clearDefaultPreset();
    /// Whether this instance began with such a preset, or has stored one since.
    [[nodiscard]] bool isDefaultPresetLoaded() const;

    /// Keeps a copy of the live state and its history aside, and exchanges both with it; master
    /// only.
    void updateShadowPreset();
    void exchangeShadowPreset();

private:
    /// How a preset is applied.
    struct CActivation {
        bool partial = false;
        bool includePersistent = false;
        bool storesName = true;
        std::int32_t group = kAllParamGroups;
    };

    void readAttributes();
    [[nodiscard]] CError* resolveObjects();
    void loadFactoryBank();
    void loadDefaultPreset();
    void loadStoredList();
    void initSession();
    [[nodiscard]] CAudioParam* findTextParam(const CString& name) const;
    [[nodiscard]] CString activationTitle(std::int32_t group) const;
    void noteEdit(const CAudioParam& param, std::int32_t group, CAudioParamContext* transaction);

    void storeCurrent(CAudioPreset& preset, std::int32_t group);
    void storeMembers(CAudioPreset& preset, std::int32_t group);
    void refreshCurrentSlot();
    [[nodiscard]] CError* readPreset(CInputStream& stream, CAudioPreset& preset) const;
    [[nodiscard]] CError* applyPreset(const CAudioPreset& preset, const CActivation& how,
                                      CAudioParamUndoRecorder* undo);
    [[nodiscard]] CError* applyItems(const CAudioPreset& preset, const CActivation& how,
                                     CAudioParamContext& transaction,
                                     CMap<CString, CAudioParam*>& unseen);
    void resetUnseen(const CMap<CString, CAudioParam*>& unseen, const CActivation& how,
                     CAudioParamContext& transaction);
    [[nodiscard]] bool holdsName(const CAudioPreset& preset) const;
    void storeName(const CString& displayName, std::int32_t group, CAudioParamContext& transaction);
    [[nodiscard]] CError* activate(const CAudioPreset& preset, const CActivation& how,
                                   const CString& title);
    void resetMembers(CAudioParamContext& transaction);
    void switchTo(int index);
    void takeSession(CAudioPresetBank& bank);
    [[nodiscard]] CError* findPreset(const CAudioPreset*& preset, const CAudioPresetBank& bank,
                                     int index) const;
    void tell(EUpdate update, const void* sender);

    CString id;
    bool isMaster = false;
    CString presetNaming;
    CString presetNameParam;
    CString groupNamesParam;
    CTarget<CAudioParamCollector*> collector;
    CTarget<CAudioParamUndo*> undoObject;
    CAudioRoutingInfoProvider* routing = nullptr;

    mutable CCriticalSection banksLock{4000};
    CAudioPresetBank factoryBank;
    CAudioPresetBank sessionBank;
    CAudioPresetBank storedList;
    int currentIndex = 0;
    COwnedArray<CPtr<CAudioParamUndoHistory>> histories; // of each session preset but the current
    bool isDefaultLoaded = false;
    CPtr<CAudioPreset> shadowPreset;
    CPtr<CAudioParamUndoHistory> shadowHistory;

    CCriticalSection membersLock{4000};
    CRegistryMembers members;
};

/// What a registry tells its listeners, under one kind or several.
struct CRegistryMessage : CUpdateMessage {
    CAudioParamRegistry::EUpdate update = CAudioParamRegistry::kAnyUpdate;
};

} // namespace tsm
