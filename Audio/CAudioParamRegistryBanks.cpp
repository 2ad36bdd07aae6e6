#include "Audio/CAudioParamRegistry.h"

#include "Audio/CAudioParamUndoStep.h"
#include "Audio/CPresetDataIds.h"
#include "Core/CAppData.h"
#include "Core/CMemoryReader.h"
#include "Core/CResourceReader.h"
#include "Core/CText.h"
#include "Core/CWriteSeqBuffer.h"

#include <utility>

namespace tsm {

namespace {

constexpr const char* kFactoryName = "Factory ROM";
constexpr const char* kSessionName = "Session Bank";
constexpr const char* kInitialName = "Default";
constexpr const char* kDefaultPresetKey = "default-preset";
/// Behind the key of a list: the one that comes with the program, for as long as the user has none.
constexpr const char* kFactoryListSuffix = "-sys";

CError* readBank(const CString& resource, CAudioPresetBank& bank)
{
    CResourceReader reader;
    TSM_TRY(reader.open(resource));
    CByteBuffer data;
    TSM_TRY(reader.readCompressedData(data, kPresetBankDataId));
    CMemoryReader content(data);
    TSM_TRY(bank.load(content));
    return nullptr;
}

CError* readList(const CByteBuffer& data, CAudioPresetBank& bank)
{
    CMemoryReader reader(data);
    TSM_TRY(bank.loadList(reader));
    return nullptr;
}

void listNames(const CAudioPresetBank& bank, COwnedArray<CString>& names)
{
    names.clear();
    for (const CAudioPreset& preset : bank.presets)
        names.create() = preset.getDisplayName();
}

} // namespace

// Beginning

void CAudioParamRegistry::initSession()
{
    loadFactoryBank();
    CAudioPresetBank copy;
    copy.copyPresets(factoryBank);
    takeSession(copy);
    loadDefaultPreset();
}

void CAudioParamRegistry::loadFactoryBank()
{
    const CString resource = getAttrString("file");
    if (!resource.isEmpty() && handleError(readBank(resource, factoryBank)))
        factoryBank.presets.clear();
    factoryBank.name = kFactoryName;
}

// Makes the presets of `bank` the session's, without applying one.
void CAudioParamRegistry::takeSession(CAudioPresetBank& bank)
{
    sessionBank.presets = std::move(bank.presets);
    sessionBank.name = kSessionName;
    if (sessionBank.presets.isEmpty())
        sessionBank.presets.create().setName(id, kInitialName);
    histories.clear();
    for (int i = 0; i < sessionBank.presets.getCount(); ++i)
        histories.create();
    currentIndex = 0;
}

void CAudioParamRegistry::loadDefaultPreset()
{
    CByteBuffer data;
    CAppData::getStore(CAppData::EStore::Local).readData(kDefaultPresetKey, data, kPresetDataId);
    if (data.isEmpty())
        return;
    CMemoryReader reader(data);
    CAudioPreset preset;
    if (handleError(readPreset(reader, preset)))
        return;
    sessionBank.presets[0] = std::move(preset);
    isDefaultLoaded = true;
}

void CAudioParamRegistry::loadStoredList()
{
    CString key = getAttrString("store-name");
    if (key.isEmpty())
        return;
    const bool isForAllProducts = key.at(0) == '/';
    CAppData& store =
        CAppData::getStore(isForAllProducts ? CAppData::EStore::Global : CAppData::EStore::Local);
    if (isForAllProducts)
        key = key.substring(1);
    CByteBuffer data;
    store.readData(key, data, kPresetListDataId);
    if (data.isEmpty())
        store.readData(key + kFactoryListSuffix, data, kPresetListDataId);
    if (!data.isEmpty() && handleError(readList(data, storedList)))
        storedList.presets.clear();
}

// Programs

int CAudioParamRegistry::getProgramCount() const
{
    const CLockScope lock(banksLock);
    return sessionBank.presets.getCount();
}

int CAudioParamRegistry::getCurrentProgram() const
{
    const CLockScope lock(banksLock);
    return currentIndex;
}

bool CAudioParamRegistry::getProgramName(int index, CString& name) const
{
    const CLockScope lock(banksLock);
    if (index < 0 || index >= sessionBank.presets.getCount())
        return false;
    name = sessionBank.presets[index].getDisplayName();
    return true;
}

void CAudioParamRegistry::getPresetNames(bool fromFactory, COwnedArray<CString>& names,
                                         int& current) const
{
    const CLockScope lock(banksLock);
    listNames(fromFactory ? factoryBank : sessionBank, names);
    current = fromFactory || !isMaster ? -1 : currentIndex;
}

void CAudioParamRegistry::selectProgram(int index, const void* sender)
{
    {
        const CAudioParamHold updates(*collector.get());
        const CLockScope lock(banksLock);
        if (!isMaster || index == currentIndex || index < 0 ||
            index >= sessionBank.presets.getCount())
            return;
        refreshCurrentSlot();
        switchTo(index);
    }
    tell(kProgramChange, sender);
}

/// Leaves the current slot as it is.
void CAudioParamRegistry::switchTo(int index)
{
    if (undoObject)
        undoObject->exchangeHistory(histories[currentIndex], histories[index]);
    currentIndex = index;
    handleError(applyPreset(sessionBank.presets[index], CActivation(), nullptr));
}

void CAudioParamRegistry::refreshCurrentSlot()
{
    CAudioPreset stored;
    storeCurrent(stored, -1);
    sessionBank.presets[currentIndex] = std::move(stored);
}

void CAudioParamRegistry::renameProgram(int index, const CString& displayName, const void* sender)
{
    {
        const CAudioParamHold updates(*collector.get());
        const CLockScope lock(banksLock);
        if (!isMaster || index < 0 || index >= sessionBank.presets.getCount())
            return;
        sessionBank.presets[index].setName(id, displayName);
        if (index == currentIndex) {
            const CAudioParamUndoStep step(undoObject.get(), "Program name change");
            CAudioParamBatch batch;
            CAudioParamContext transaction;
            transaction.batch = &batch;
            transaction.undo = step.getRecorder();
            storeName(displayName, kAllParamGroups, transaction);
            collector->queueBatch(batch);
        }
    }
    tell(kProgramRename, sender);
}

// Presets and banks as data

CError* CAudioParamRegistry::findPreset(const CAudioPreset*& preset, const CAudioPresetBank& bank,
                                        int index) const
{
    if (index < 0 || index >= bank.presets.getCount())
        TSM_FAIL("@tsmstr_CAudioParamRegistry_acquirePreset_PresetIndexError Invalid preset index "
                 "%1 specified.",
                 toString(index));
    preset = &bank.presets[index];
    return nullptr;
}

CError* CAudioParamRegistry::acquirePreset(bool fromFactory, int index, std::int32_t group,
                                           COutputStream& stream)
{
    const CLockScope lock(banksLock);
    if (!fromFactory && (!isMaster || index == -1 || index == currentIndex)) {
        CAudioPreset live;
        storeCurrent(live, group);
        TSM_TRY(live.save(stream));
        if (isMaster && group < 0)
            sessionBank.presets[currentIndex] = std::move(live);
        return nullptr;
    }
    const CAudioPreset* preset = nullptr;
    TSM_TRY(findPreset(preset, fromFactory ? factoryBank : sessionBank, index));
    TSM_TRY(preset->save(stream));
    return nullptr;
}

CError* CAudioParamRegistry::acquireBank(bool fromFactory, COutputStream& stream)
{
    if (!isMaster)
        TSM_FAIL("@tsmstr_CAudioParamRegistry_acquireBank_NonMasterRegistry Acquiring bank in a "
                 "non-master registry is an error.");
    const CLockScope lock(banksLock);
    if (!fromFactory)
        refreshCurrentSlot();
    TSM_TRY((fromFactory ? factoryBank : sessionBank).save(stream));
    return nullptr;
}

CError* CAudioParamRegistry::loadBank(CInputStream& stream, const void* sender)
{
    if (!isMaster)
        TSM_FAIL("@tsmstr_CAudioParamRegistry_loadBank_NonMasterRegistry Loading a bank in a "
                 "non-master registry is an error.");
    CAudioPresetBank loaded;
    TSM_TRY(loaded.load(stream));
    for (const CAudioPreset& preset : loaded.presets)
        if (!(preset.getId() == id))
            TSM_FAIL("@tsmstr_CAudioParamRegistry_activatePreset_IncompatiblePreset Incompatible "
                     "preset.");
    {
        const CAudioParamHold updates(*collector.get());
        const CLockScope lock(banksLock);
        takeSession(loaded);
        switchTo(0);
        histories[0].reset(); // that of the former session
    }
    tell(kProgramChange, sender);
    return nullptr;
}

void CAudioParamRegistry::getStoredPresetNames(COwnedArray<CString>& names) const
{
    const CLockScope lock(banksLock);
    listNames(storedList, names);
}

CError* CAudioParamRegistry::acquireStoredPreset(int index, COutputStream& stream) const
{
    const CLockScope lock(banksLock);
    const CAudioPreset* preset = nullptr;
    TSM_TRY(findPreset(preset, storedList, index));
    TSM_TRY(preset->save(stream));
    return nullptr;
}

// The default preset

CError* CAudioParamRegistry::saveDefaultPreset()
{
    CWriteSeqBuffer bytes;
    TSM_TRY(acquirePreset(false, -1, -1, bytes));
    CByteBuffer data;
    bytes.takeData(data);
    if (!CAppData::getStore(CAppData::EStore::Local)
             .writeData(kDefaultPresetKey, data, this, kPresetDataId))
        TSM_FAIL("@tsmstr_CAudioParamRegistry_saveDefaultPreset_WriteError The default preset "
                 "could not be stored.");
    const CLockScope lock(banksLock);
    isDefaultLoaded = true;
    return nullptr;
}

void CAudioParamRegistry::clearDefaultPreset()
{
    if (!CAppData::getStore(CAppData::EStore::Local).removeData(kDefaultPresetKey, this))
        return;
    const CLockScope lock(banksLock);
    isDefaultLoaded = false;
}

bool CAudioParamRegistry::isDefaultPresetLoaded() const
{
    const CLockScope lock(banksLock);
    return isDefaultLoaded;
}

// A and B

void CAudioParamRegistry::updateShadowPreset()
{
    const CLockScope lock(banksLock);
    if (!isMaster)
        return;
    if (!shadowPreset)
        shadowPreset.reset(new CAudioPreset);
    storeCurrent(*shadowPreset, -1);
    if (undoObject)
        undoObject->cloneHistory(shadowHistory);
}

void CAudioParamRegistry::exchangeShadowPreset()
{
    {
        const CAudioParamHold updates(*collector.get());
        const CLockScope lock(banksLock);
        if (!isMaster)
            return;
        if (!shadowPreset)
            updateShadowPreset();
        CPtr<CAudioPreset> left(new CAudioPreset);
        storeCurrent(*left, -1);
        CActivation how;
        how.storesName = !holdsName(*shadowPreset);
        handleError(applyPreset(*shadowPreset, how, nullptr));
        sessionBank.presets[currentIndex].name = shadowPreset->name;
        if (undoObject)
            undoObject->exchangeHistory(shadowHistory, shadowHistory);
        shadowPreset = std::move(left);
    }
    tell(kActivation, nullptr);
}

} // namespace tsm
