#include "Audio/CAudioParamRegistry.h"

#include "Audio/CAudioParamUndoStep.h"
#include "Audio/CPresetItem.h"
#include "Core/CMemoryReader.h"
#include "Core/CText.h"

#include <utility>

namespace tsm {

namespace {

constexpr const char* kUserName = "User";

} // namespace

CAudioParamRegistry::CAudioParamRegistry() = default;

CAudioParamRegistry::~CAudioParamRegistry()
{
    if (collector)
        collector->removeRegistry(*this);
}

CError* CAudioParamRegistry::init()
{
    TSM_TRY(CObject::init());
    TSM_TRY(resolveObjects());
    readAttributes();
    const CString hierarchy = getAttrString("hierarchy");
    members.init(*collector.get(), hierarchy, getAttrBool("is-global-param-storable"));
    TSM_TRY(members.parseRemaps(getAttrString("def-name-remap")));
    if (isMaster)
        initSession();
    else
        loadStoredList();
    collector->addRegistry(*this, hierarchy);
    return nullptr;
}

CError* CAudioParamRegistry::resolveObjects()
{
    TSM_TRY(findObjectByAttr(collector, "param-collector"));
    if (!getAttrString("param-undo").isEmpty())
        TSM_TRY(findObjectByAttr(undoObject, "param-undo"));
    return nullptr;
}

void CAudioParamRegistry::readAttributes()
{
    id = getAttrString("id");
    isMaster = getAttrBool("is-master");
    presetNaming = getAttrString("preset-naming");
    presetNameParam = getAttrString("preset-name-param");
    groupNamesParam = getAttrString("group-names-param");
}

// Applying

CError* CAudioParamRegistry::readPreset(CInputStream& stream, CAudioPreset& preset) const
{
    TSM_TRY(preset.load(stream));
    if (!(preset.getId() == id))
        TSM_FAIL("@tsmstr_CAudioParamRegistry_activatePreset_IncompatiblePreset Incompatible "
                 "preset.");
    return nullptr;
}

CError* CAudioParamRegistry::applyPreset(const CAudioPreset& preset, const CActivation& how,
                                         CAudioParamUndoRecorder* undo)
{
    const CAudioParamHold updates(*collector.get());
    const CLockScope lock(membersLock);
    members.refresh();
    CMap<CString, CAudioParam*> unseen;
    if (!how.partial)
        unseen = members.getAll();
    CAudioParamBatch batch;
    CAudioParamContext transaction;
    transaction.batch = &batch;
    transaction.undo = undo;
    CError* const error = applyItems(preset, how, transaction, unseen);
    if (!error) {
        resetUnseen(unseen, how, transaction);
        if (how.storesName)
            storeName(preset.getDisplayName(), how.group, transaction);
    }
    if (routing)
        routing->updateRouting(&transaction);
    collector->queueBatch(batch);
    return error;
}

CError* CAudioParamRegistry::applyItems(const CAudioPreset& preset, const CActivation& how,
                                        CAudioParamContext& transaction,
                                        CMap<CString, CAudioParam*>& unseen)
{
    for (const auto& item : preset.items) {
        CAudioParam& param = members.findOrCreate(item.key, &transaction);
        unseen.remove(item.key);
        if (!members.isHeld(param, how.includePersistent))
            continue;
        CMemoryReader reader(item.value);
        CString definitionName;
        TSM_TRY(reader.readString(definitionName));
        TSM_TRY(param.loadValues(reader, how.group, this, &transaction));
    }
    return nullptr;
}

void CAudioParamRegistry::resetUnseen(const CMap<CString, CAudioParam*>& unseen,
                                      const CActivation& how, CAudioParamContext& transaction)
{
    for (const auto& member : unseen) {
        CAudioParam& param = *member.value;
        if (!members.isHeld(param, how.includePersistent))
            continue;
        // What all groups share isn't one group's to reset.
        if (how.group == kAllParamGroups || !param.getInfo()->shape.isSingleGroup)
            param.reset(how.group, -1, this, &transaction);
    }
}

CAudioParam* CAudioParamRegistry::findTextParam(const CString& name) const
{
    CAudioParam* const param = name.isEmpty() ? nullptr : collector->find(name);
    const CAudioParamInfo* const info = param ? param->getInfo() : nullptr;
    return info && info->shape.dataType == EAudioParamType::String ? param : nullptr;
}

// A state that was edited says so by another name than that of its program.
bool CAudioParamRegistry::holdsName(const CAudioPreset& preset) const
{
    const CAudioParam* const param = findTextParam(presetNameParam);
    return param && preset.items.contains(members.keyOf(*param));
}

void CAudioParamRegistry::storeName(const CString& displayName, std::int32_t group,
                                    CAudioParamContext& transaction)
{
    if (CAudioParam* const param = findTextParam(presetNameParam))
        param->setText(group, 0, displayName, this, &transaction);
}

void CAudioParamRegistry::applyInitial()
{
    if (!isMaster)
        return;
    // Twice: persistent values come up as they are stored, and then the way of any activation.
    const CAudioParamHold updates(*collector.get());
    const CLockScope lock(banksLock);
    CActivation how;
    how.includePersistent = true;
    handleError(applyPreset(sessionBank.presets[0], how, nullptr));
    handleError(applyPreset(sessionBank.presets[0], CActivation(), nullptr));
}

CString CAudioParamRegistry::activationTitle(std::int32_t group) const
{
    CString title = presetNaming + " activate";
    if (group == kAllParamGroups)
        return title;
    const CAudioParam* const names = findTextParam(groupNamesParam);
    CString name = names ? names->text(0, group) : CString();
    if (name.isEmpty())
        name = toString(group + 1);
    return title + " (" + name + ")";
}

CError* CAudioParamRegistry::activatePreset(CInputStream& stream, bool partial, std::int32_t group,
                                            bool includePersistent)
{
    CActivation how;
    how.partial = partial;
    how.includePersistent = includePersistent;
    how.group = group < 0 ? kAllParamGroups : group;
    if (how.group >= kMaxParamGroups && how.group != kAllParamGroups)
        TSM_FAIL("@tsmstr_CAudioParamRegistry_activatePreset_InvalidGroup Invalid group %1 "
                 "specified.",
                 toString(group));
    CAudioPreset preset;
    TSM_TRY(readPreset(stream, preset));
    how.storesName = !includePersistent || !holdsName(preset);
    TSM_TRY(activate(preset, how, activationTitle(how.group)));
    return nullptr;
}

CError* CAudioParamRegistry::activate(const CAudioPreset& preset, const CActivation& how,
                                      const CString& title)
{
    CError* error = nullptr;
    {
        const CAudioParamHold updates(*collector.get());
        // Held until the step is in the history that it belongs to.
        const CLockScope lock(banksLock);
        const CAudioParamUndoStep step(undoObject.get(), title);
        error = applyPreset(preset, how, step.getRecorder());
        if (!error && isMaster)
            sessionBank.presets[currentIndex].name = preset.name;
    }
    tell(kActivation, nullptr);
    TSM_TRY(error);
    return nullptr;
}

CError* CAudioParamRegistry::activateRomPreset(int index)
{
    // The factory's presets don't change.
    const CAudioPreset* preset = nullptr;
    TSM_TRY(findPreset(preset, factoryBank, index));
    TSM_TRY(activate(*preset, CActivation(), "ROM preset activate"));
    return nullptr;
}

CError* CAudioParamRegistry::setDefaultPreset(CInputStream& stream)
{
    if (!isMaster)
        TSM_FAIL("@tsmstr_CAudioParamRegistry_setDefaultPreset_NonMasterRegistry Setting the "
                 "default preset of a non-master registry is an error.");
    CAudioPreset preset;
    TSM_TRY(readPreset(stream, preset));
    CActivation how;
    how.partial = true;
    how.storesName = false;
    CError* error = nullptr;
    {
        const CAudioParamHold updates(*collector.get());
        const CLockScope lock(banksLock);
        error = applyPreset(preset, how, nullptr);
    }
    tell(kActivation, nullptr);
    TSM_TRY(error);
    return nullptr;
}

void CAudioParamRegistry::masterReset()
{
    if (!isMaster)
        return;
    {
        const CAudioParamHold updates(*collector.get());
        const CLockScope lock(banksLock);
        const CAudioParamUndoStep step(undoObject.get(), "Master reset");
        CAudioParamBatch batch;
        CAudioParamContext transaction;
        transaction.batch = &batch;
        transaction.undo = step.getRecorder();
        resetMembers(transaction);
        collector->queueBatch(batch);
    }
    tell(kActivation, nullptr);
}

void CAudioParamRegistry::resetMembers(CAudioParamContext& transaction)
{
    const CLockScope lock(membersLock);
    members.refresh();
    for (const auto& member : members.getAll())
        if (const CAudioParamInfo* info = member.value->getInfo(); info && info->isStorable)
            member.value->reset(kAllParamGroups, -1, this, &transaction);
    if (CAudioParam* const name = findTextParam(presetNameParam))
        name->reset(kAllParamGroups, -1, this, &transaction);
}

// Edits

CAudioParamRegistry* CAudioParamRegistry::find(const CAudioParamCollector& collector,
                                               const CString& fullName)
{
    CArray<CAudioParamRegistry*> registries;
    collector.listRegistries(registries);
    for (CAudioParamRegistry* registry : registries)
        if (registry->getFullName() == fullName)
            return registry;
    return nullptr;
}

void CAudioParamRegistry::noteUserEdit(const CAudioParam& param, std::int32_t group,
                                       CAudioParamContext* transaction)
{
    CArray<CAudioParamRegistry*> registries;
    param.getCollector().listRegistries(registries);
    for (CAudioParamRegistry* registry : registries)
        registry->noteEdit(param, group, transaction);
}

// Takes none of the registry's locks: the caller holds a parameter's, which comes behind them.
void CAudioParamRegistry::noteEdit(const CAudioParam& param, std::int32_t group,
                                   CAudioParamContext* transaction)
{
    CAudioParam* const name = findTextParam(presetNameParam);
    if (!name || members.keyOf(param).isEmpty() || !members.isHeld(param, false))
        return;
    if (!(name->text(group == kAllParamGroups ? 0 : group, 0) == kUserName))
        name->setText(group, 0, kUserName, this, transaction);
}

// Storing

void CAudioParamRegistry::storeCurrent(CAudioPreset& preset, std::int32_t group)
{
    preset.items.clear();
    if (isMaster) {
        preset.name = sessionBank.presets[currentIndex].name;
    } else {
        const CAudioParam* const name = findTextParam(presetNameParam);
        preset.setName(id, name ? name->text(group < 0 ? 0 : group, 0) : CString());
    }
    const CLockScope lock(membersLock);
    members.refresh();
    storeMembers(preset, group);
}

void CAudioParamRegistry::storeMembers(CAudioPreset& preset, std::int32_t group)
{
    for (const auto& member : members.getAll()) {
        const CAudioParam& param = *member.value;
        if (!members.isHeld(param, true))
            continue;
        const CAudioParamLock lock(param);
        const CAudioParamStorage& values = param.getValues();
        const bool isShared = values.getShape().isSingleGroup;
        if (group >= 0 && values.getElementCount(isShared ? 0 : group) == 0)
            continue;
        CByteBuffer bytes;
        // Memory takes whatever fits it.
        if (!handleError(writePresetItem(param.getInfo()->fullName, values, group, bytes)))
            preset.items[member.key] = std::move(bytes);
    }
}

void CAudioParamRegistry::tell(EUpdate update, const void* sender)
{
    CRegistryMessage message;
    message.sender = sender;
    message.update = update;
    message.kind = update;
    broadcast(&message);
    if (update == kProgramRename) {
        message.kind = kProgramChange;
        broadcast(&message);
    }
    message.kind = kAnyUpdate;
    broadcast(&message);
}

} // namespace tsm
