#include "Core/CAppData.h"

#include "Core/CAppDataGlobal.h"
#include "Core/CAppDataGroup.h"
#include "Core/CAppDataLocal.h"
#include "Core/CFileReader.h"
#include "Core/CFileReplacer.h"
#include "Core/CMemoryReader.h"
#include "Core/CPtr.h"
#include "Core/CResourceMap.h"
#include "Core/CSystem.h"
#include "Core/CWriteSeqBuffer.h"
#include "Platform/CFileSystem.h"

#include <string>

namespace tsm {
namespace {

bool isItemName(const CString& key)
{
    const std::string name = key.toUtf8();
    return !name.empty() && name != "." && name != ".." && key.find('/') < 0 &&
           key.find(std::uint16_t{0}) < 0;
}

/// Folders and devices under an item's name don't count as items; opening a pipe could wait.
bool isFile(const CString& path)
{
    return pathKind(path.toUtf8().c_str()) == EPathKind::File;
}

} // namespace

CAppData::CAppData(const CPlaces& storePlaces) : places(storePlaces) {}

CAppData& CAppData::getStore(EStore store)
{
    static CAppDataGlobal global;
    static CAppDataGroup group;
    static CAppDataLocal local;
    if (store == EStore::Global)
        return global;
    if (store == EStore::Group)
        return group;
    return local;
}

CAppData* CAppData::findStore(const CString& word)
{
    if (word == "global")
        return &getStore(EStore::Global);
    if (word == "group")
        return &getStore(EStore::Group);
    return word == "local" ? &getStore(EStore::Local) : nullptr;
}

CAppData::CBaseFolders CAppData::findBaseFolders() const
{
    return {CSystem::getUserDataFolder(), CSystem::getCommonDataFolder(),
            CSystem::getModuleFolder()};
}

void CAppData::resolveFolders()
{
    if (state != EState::Unresolved)
        return;
    const CBaseFolders base = findBaseFolders();
    if (base.user.isEmpty()) {
        state = EState::Failed;
        return;
    }
    userFolder = base.user + "/" + places.subFolder;
    if (!base.common.isEmpty())
        commonFolder = base.common + "/" + places.subFolder;
    if (*places.altSubFolder)
        altFolder = base.user + "/" + places.altSubFolder;
    if (!base.module.isEmpty())
        moduleFolder = base.module + places.moduleSubFolder;
    state = EState::Resolved;
}

void CAppData::makeFolder()
{
    resolveFolders();
    if (state == EState::Resolved)
        state = CSystem::makeDirs(userFolder) ? EState::Created : EState::Failed;
}

// Reading

void CAppData::readData(const CString& key, CByteBuffer& buffer, std::uint32_t blockId, bool force)
{
    buffer.clear();
    if (!isItemName(key))
        return;
    CLockScope hold(lock);
    resolveFolders();
    if (state != EState::Failed)
        readItem(key, buffer, blockId, force);
}

void CAppData::readItem(const CString& key, CByteBuffer& buffer, std::uint32_t blockId, bool force)
{
    const std::uint64_t id = getKeyId(key);
    const CEntry* known = cache.find(id);
    const bool isKnown = known && known->blockId == blockId;
    if (!known || force) {
        CByteBuffer data;
        bool isThere = false;
        const CPtr<CError> error(readSources(key, data, blockId, isThere)); // told to nobody
        if (isThere && !error) {
            CEntry& entry = cache[id];
            entry.blockId = blockId;
            entry.data = data;
            buffer = std::move(data);
            return;
        }
    }
    if (isKnown)
        buffer = known->data;
}

// The first source that opens ends the search, whether its item can be read or not.
CError* CAppData::readSources(const CString& key, CByteBuffer& buffer, std::uint32_t blockId,
                              bool& isThere) const
{
    for (const CString* folder : {&userFolder, &commonFolder, &altFolder, &moduleFolder}) {
        if (folder->isEmpty() || !isFile(*folder + key))
            continue;
        CFileReader file;
        if (const CPtr<CError> refused(file.open(*folder + key)); refused)
            continue;
        isThere = true;
        TSM_TRY(file.readCompressedData(buffer, blockId));
        return nullptr;
    }
    // Not through CResourceReader, which takes a file in the working folder for a missing resource.
    const auto* resource = CResourceMap::get().find(places.resourcePrefix + key);
    if (!resource)
        return nullptr;
    isThere = true;
    CMemoryReader reader(resource->data, resource->size);
    TSM_TRY(reader.readCompressedData(buffer, blockId));
    return nullptr;
}

// Writing

bool CAppData::writeData(const CString& key, const CByteBuffer& buffer, const void* sender,
                         std::uint32_t blockId)
{
    const bool isStored = storeData(key, buffer, blockId);
    if (isStored)
        tellChange(key, sender);
    return isStored;
}

void CAppData::keepInMemory() noexcept
{
    isInMemory = true;
}

bool CAppData::storeData(const CString& key, const CByteBuffer& buffer, std::uint32_t blockId)
{
    if (!isItemName(key))
        return false;
    CLockScope hold(lock);
    if (isInMemory)
        resolveFolders();
    else
        makeFolder();
    if (state == EState::Failed)
        return false;
    CEntry& entry = cache[getKeyId(key)];
    entry.blockId = blockId;
    entry.data = buffer;
    if (isInMemory)
        return false;
    const CPtr<CError> error(writeFile(key, buffer, blockId));
    return !error;
}

CError* CAppData::writeFile(const CString& key, const CByteBuffer& buffer,
                            std::uint32_t blockId) const
{
    CFileReplacer file;
    TSM_TRY(file.open(userFolder + key));
    TSM_TRY(file.writeCompressedData(buffer.data(), buffer.getSize(), blockId));
    TSM_TRY(file.commit());
    return nullptr;
}

bool CAppData::removeData(const CString& key, const void* sender)
{
    if (!isItemName(key))
        return false;
    {
        CLockScope hold(lock);
        resolveFolders();
        if (state == EState::Failed || isInMemory ||
            removeFile((userFolder + key).toUtf8().c_str()) != 0)
            return false;
        cache.remove(getKeyId(key));
    }
    tellChange(key, sender);
    return true;
}

void CAppData::tellChange(const CString& key, const void* sender)
{
    const CUpdateMessage message{sender, getKeyId(key)};
    broadcast(&message);
}

// Texts

CString CAppData::readText(const CString& key, const CString& otherwise, bool force)
{
    CByteBuffer buffer;
    readData(key, buffer, kTextDataId, force);
    if (buffer.isEmpty())
        return otherwise;
    CString text;
    CMemoryReader reader(buffer);
    const CPtr<CError> error(reader.readString(text)); // a damaged text reads as none
    return error ? CString() : text;
}

bool CAppData::writeText(const CString& key, const CString& text, const void* sender)
{
    CWriteSeqBuffer stream(256);
    const CPtr<CError> error(stream.writeString(text)); // only above 2 GB
    const int limit = static_cast<int>(CInputStream::kMaxStringBytes + sizeof(std::uint32_t));
    if (error || stream.getSize() > limit)
        return false;
    CByteBuffer buffer;
    stream.takeData(buffer);
    return writeData(key, buffer, sender, kTextDataId);
}

// Keys

std::uint64_t CAppData::getKeyId(const CString& key)
{
    CLockScope hold(keyLock);
    std::uint64_t& id = keyIds[key];
    if (id == 0)
        id = ++keyCounter;
    return id;
}

std::uint64_t CAppData::getUpdateKind(std::uint64_t param)
{
    return getKeyId(*reinterpret_cast<const CString*>(param));
}

} // namespace tsm
