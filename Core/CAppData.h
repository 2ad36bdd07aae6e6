#pragma once

#include "Core/CByteBuffer.h"
#include "Core/CDataId.h"
#include "Core/CError.h"
#include "Core/CMap.h"
#include "Core/CString.h"
#include "Core/CUpdateNotifier.h"

#include <atomic>
#include <cstdint>

namespace tsm {

/// One store of persistent data that outlive a plug-in instance: settings, lists, palettes.
///
/// An item is a file of its own, named by its key, with one compressed block; the block's id tells
/// the type. The user's file counts, then the common one, the alternative one, the one beside the
/// module, and last an embedded resource with the factory's default. What was read once stays in
/// memory. A write replaces the file as a whole: whatever happens meanwhile, readers in this
/// process and others see the former item or the new one.
///
/// The store is silent about what goes wrong: an item that can't be read is missing. One whose
/// folder couldn't be found or made stays failed to the end. Two processes aren't coordinated: the
/// last writer wins, and another process sees it when it reads with `force`.
///
/// Keys are file names: an empty one, "." or "..", one with a slash or a zero names no item, which
/// reads as missing and isn't written. Letters of either case differ where the file system has it
/// so. All operations: [any], never on the audio thread, since they may wait for the disk.
class CAppData : public CUpdateNotifier {
public:
    /// Data of all products of the maker, of all its plug-ins, of this product.
    enum class EStore { Global, Group, Local };

    /// Where the items of a store lie, each path empty or with a slash at its end.
    struct CPlaces {
        const char* subFolder;       // below the user's and the common folder
        const char* moduleSubFolder; // below the module's folder
        const char* resourcePrefix;  // in front of the key
        const char* altSubFolder;    // below the user's folder
    };
    /// The folders that places are below; without a slash at the end but the module's.
    struct CBaseFolders {
        CString user;
        CString common;
        CString module;
    };

    explicit CAppData(const CPlaces& storePlaces);

    /// One of the three stores of the process. They are made at first use and end with the module.
    [[nodiscard]] static CAppData& getStore(EStore store);
    /// The store that documents call "global", "group" or "local"; null for any other word.
    [[nodiscard]] static CAppData* findStore(const CString& word);

    /// From here on nothing is written: what is stored counts in this process alone, as when the
    /// disk refuses it. For tools that leave the user's settings alone. [setup]
    static void keepInMemory() noexcept;

    /// Reads an item; `buffer` is empty when it is missing, damaged, or of another type than
    /// `blockId` asks for. With `force` the disk is asked even if the item is in memory, which then
    /// counts where the disk has none.
    void readData(const CString& key, CByteBuffer& buffer, std::uint32_t blockId,
                  bool force = false);
    /// Replaces an item and tells the listeners of the key, with `sender` as the message's sender.
    /// When the disk refuses it, it counts in this process all the same and nobody is told; when
    /// the store has failed, nothing happens. Tells whether the item is on the disk. The caller
    /// holds no lock that a listener waits for.
    bool writeData(const CString& key, const CByteBuffer& buffer, const void* sender,
                   std::uint32_t blockId);
    /// As writeData(), but nobody is told: the caller does so by tellChange() when it has left
    /// locks of its own. Tells whether there is something to tell.
    [[nodiscard]] bool storeData(const CString& key, const CByteBuffer& buffer,
                                 std::uint32_t blockId);
    /// Tells the listeners of a key that its item has changed.
    void tellChange(const CString& key, const void* sender);
    /// Removes the user's item, so that the next source counts again, and tells the listeners as
    /// above. When the disk refuses it, nothing happens. Tells whether it is gone.
    bool removeData(const CString& key, const void* sender);

    /// Reads an item of one string: `otherwise` when it is missing, empty when it holds none.
    [[nodiscard]] CString readText(const CString& key, const CString& otherwise,
                                   bool force = false);
    /// Writes an item of one string; one that is too long to be read again isn't written.
    bool writeText(const CString& key, const CString& text, const void* sender);

    /// The number that stands for a key in this store; one from 1 on is made for a new key.
    [[nodiscard]] std::uint64_t getKeyId(const CString& key);
    /// `param` is the address of a key, as a CAppDataListener passes it.
    [[nodiscard]] std::uint64_t getUpdateKind(std::uint64_t param) override;

protected:
    /// Asked once, at the first read or write.
    [[nodiscard]] virtual CBaseFolders findBaseFolders() const;

private:
    static inline std::atomic<bool> isInMemory = false;

    enum class EState { Unresolved, Resolved, Created, Failed };
    struct CEntry {
        std::uint32_t blockId = 0;
        CByteBuffer data;
    };

    void resolveFolders();
    void makeFolder();
    void readItem(const CString& key, CByteBuffer& buffer, std::uint32_t blockId, bool force);
    [[nodiscard]] CError* readSources(const CString& key, CByteBuffer& buffer,
                                      std::uint32_t blockId, bool& isThere) const;
    [[nodiscard]] CError* writeFile(const CString& key, const CByteBuffer& buffer,
                                    std::uint32_t blockId) const;

    const CPlaces places;

    CCriticalSection lock{4000};
    EState state = EState::Unresolved;
    CString userFolder;
    CString commonFolder;
    CString altFolder;
    CString moduleFolder;
    CMap<std::uint64_t, CEntry> cache; // by key id

    // Apart from the lock above, which is held while the disk works.
    CCriticalSection keyLock{50};
    std::uint64_t keyCounter = 0;
    CMap<CString, std::uint64_t> keyIds;
};

/// Hears of the changes of one item of a store and passes them on to its owner, which defines
/// `onUpdate`; a derived class of its own leaves the store in its destructor (detach()).
template <class T>
class CAppDataListener : public COwnedUpdateListener<T> {
public:
    using COwnedUpdateListener<T>::COwnedUpdateListener;

    /// Leaves the former item and joins `key` of `store`, which may have ended. See CUpdateListener
    /// for what the caller may hold. [any]
    void attach(CAppData* store, const CString& key)
    {
        CUpdateListener::attach(store, reinterpret_cast<std::uintptr_t>(&key));
    }
    /// Leaves the item; from then on no other thread is in a call from it. [any]
    void detach() { CUpdateListener::attach(nullptr); }
};

} // namespace tsm
