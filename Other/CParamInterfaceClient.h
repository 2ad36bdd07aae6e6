#pragma once

#include "Audio/CAudioParamChange.h"
#include "Core/CObject.h"
#include "Core/CWriteSeqBuffer.h"
#include "Other/CInterfaceFields.h"
#include "Other/CMessageInput.h"
#include "Other/CParamInterfaceParamListener.h"
#include "Other/CParamInterfaceRegistryListener.h"

#include <cstdint>

namespace tsm {

class CParamInterfaceClientConnector;

/// The window's end of the parameter interface: who listens, and one sender for each message.
///
/// What it sends is done, at the base, when the call returns; its answers come later, on this
/// thread, through the connector's timer. Listeners are borrowed. All operations [ui], and fail
/// with what the base says (CParamInterfaceBase).
///
/// Events: `undo-history-changed`.
class CParamInterfaceClient : public CObject {
public:
    CParamInterfaceClient();
    ~CParamInterfaceClient() override;

    /// Joins the connector at the path in `client-connector`. Errors: none there.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);
    /// Ends all listening.
    void releaseLinks() override;

    /// Takes one message from the base. Errors: damaged data, an unknown message, a listener's.
    /// [ui] Through the connector.
    [[nodiscard]] CError* processMessage(CInputStream& message);
    /// The connector ends before this object.
    void forgetConnector() noexcept { connector = nullptr; }

    // Listeners. A number of 0 stands for none; the base doesn't give it.

    [[nodiscard]] CError* listenParam(std::uint32_t& listenerId, const CString& name,
                                      CParamInterfaceParamListener& listener);
    [[nodiscard]] CError* unlistenParam(std::uint32_t listenerId);
    [[nodiscard]] CError* listenRegistry(std::uint32_t& listenerId, const CString& name,
                                         CParamInterfaceRegistryListener& listener);
    [[nodiscard]] CError* unlistenRegistry(std::uint32_t listenerId);

    // Steps and edits

    /// Opens a step that changes are recorded in; steps of one `mergeId` (-1: none) become one.
    [[nodiscard]] CError* createUndoData(std::uint32_t& undoId, const CString& name,
                                         bool isMergeable = false, std::int32_t mergeId = -1);
    /// Drops an open step; its changes stay.
    [[nodiscard]] CError* removeUndoData(std::uint32_t undoId);
    /// Puts an open step into the history, under another name unless that is empty.
    [[nodiscard]] CError* submitUndoData(std::uint32_t undoId, const CString& name = CString());
    [[nodiscard]] CError* requestUndoHistory();
    [[nodiscard]] CError* setUndoHistoryPos(std::int32_t position);
    /// Changes the parameter of a listener; with the number of no open step without one.
    [[nodiscard]] CError* changeParam(std::uint32_t listenerId, std::uint32_t undoId,
                                      const CAudioParamChange& change);
    /// Back to the default: one element (-1: all) of one group (kAllParamGroups: all); with
    /// `useFirstElement` all elements to the default of the first.
    [[nodiscard]] CError* resetParam(std::uint32_t listenerId, std::int32_t group,
                                     std::int32_t element, std::uint32_t undoId,
                                     bool useFirstElement);

    // Registries, by a listener's number

    [[nodiscard]] CError* setCurrentProgram(std::uint32_t listenerId, std::int32_t index);
    [[nodiscard]] CError* renamePreset(std::uint32_t listenerId, std::int32_t index,
                                       const CString& name);
    [[nodiscard]] CError* activateFactoryPreset(std::uint32_t listenerId, std::int32_t index);
    /// `group` is -1 or kAllParamGroups for all.
    [[nodiscard]] CError* activatePreset(std::uint32_t listenerId, std::int32_t group,
                                         const CAudioPreset& preset);
    /// Has the listener's onPreset called; `index` -1 is the session's current one.
    [[nodiscard]] CError* requestPreset(std::uint32_t listenerId, std::uint32_t requestId,
                                        bool fromFactory, std::int32_t index, std::int32_t group);
    /// Has the listener's onBank called.
    [[nodiscard]] CError* requestBank(std::uint32_t listenerId, std::uint32_t requestId,
                                      bool fromFactory);
    [[nodiscard]] CError* setDefaultPreset(std::uint32_t listenerId, const CAudioPreset& preset);
    [[nodiscard]] CError* activateDefaultPreset(std::uint32_t listenerId);
    [[nodiscard]] CError* exchangeShadowPreset(std::uint32_t listenerId);
    [[nodiscard]] CError* updateShadowPreset(std::uint32_t listenerId);

    // What has arrived

    [[nodiscard]] const COwnedArray<CString>& getUndoNames() const noexcept { return undoNames; }
    [[nodiscard]] std::int32_t getUndoPosition() const noexcept { return undoPosition; }
    /// The number by which the base knows this client; 0 without a connector.
    [[nodiscard]] std::uint32_t getClientId() const noexcept;

protected:
    [[nodiscard]] CInputStream& getMessage() const noexcept { return input.get(); }
    [[nodiscard]] CError* send(CWriteSeqBuffer& message);
    /// Sends a message of plain fields.
    template <class... T>
    [[nodiscard]] CError* sendMessage(const char* name, const T&... fields);
    /// Makes a number for a listener or step, of this client and in no entry of `used`. `counter`
    /// is that of the kind. Errors: all are in use.
    template <class Map>
    [[nodiscard]] CError* makeId(std::uint32_t& id, std::uint32_t& counter, const Map& used) const;

private:
    template <class Listener>
    struct CEntry : CTsmMemAllocator {
        CString name;
        Listener* listener = nullptr;
    };
    template <class Listener>
    struct CListeners {
        const char* listenMessage;
        const char* unlistenMessage;
        CMap<std::uint32_t, CEntry<Listener>> entries{};
        std::uint32_t counter = 0;
    };
    using CParamEntry = CEntry<CParamInterfaceParamListener>;
    using CRegistryEntry = CEntry<CParamInterfaceRegistryListener>;

    template <class Listener>
    [[nodiscard]] CError* listen(CListeners<Listener>& listeners, std::uint32_t& listenerId,
                                 const CString& name, Listener& listener);
    template <class Listener>
    [[nodiscard]] CError* unlisten(CListeners<Listener>& listeners, std::uint32_t listenerId);
    [[nodiscard]] CError* readNames(COwnedArray<CString>& names);

    [[nodiscard]] CError* onUpdateUndoHistory();
    [[nodiscard]] CError* onUpdateParamInfo();
    [[nodiscard]] CError* onUpdateParam();
    [[nodiscard]] CError* onUpdateRegistry();
    [[nodiscard]] CError* onRegistryData();
    [[nodiscard]] CError* tooManyIds() const;

    CParamInterfaceClientConnector* connector = nullptr;
    CMessageInput input;
    CListeners<CParamInterfaceParamListener> paramListeners{"listen-param", "unlisten-param"};
    CListeners<CParamInterfaceRegistryListener> registryListeners{"listen-registry",
                                                                  "unlisten-registry"};
    CSet<std::uint32_t> openSteps;
    std::uint32_t undoCounter = 0;
    COwnedArray<CString> undoNames;
    std::int32_t undoPosition = 0;
};

template <class... T>
CError* CParamInterfaceClient::sendMessage(const char* name, const T&... fields)
{
    CWriteSeqBuffer message;
    TSM_TRY(writeFields(message, name, fields...));
    TSM_TRY(send(message));
    return nullptr;
}

template <class Map>
CError* CParamInterfaceClient::makeId(std::uint32_t& id, std::uint32_t& counter,
                                      const Map& used) const
{
    constexpr std::uint32_t kMaxCounter = 0xFFFF;
    if (static_cast<std::uint32_t>(used.getCount()) >= kMaxCounter)
        return tooManyIds();
    do {
        counter = counter % kMaxCounter + 1;
        id = getClientId() << 16 | counter;
    } while (used.contains(id));
    return nullptr;
}

} // namespace tsm
