#pragma once

#include "Audio/CAudioParamChange.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamUndo.h"
#include "Core/CWriteSeqBuffer.h"
#include "Other/CInterfaceBlock.h"
#include "Other/CInterfaceFields.h"
#include "Other/CMessageInput.h"
#include "Other/CParamInterfaceBaseConnector.h"

#include <cstdint>

namespace tsm {

class CAudioParamRegistry;

/// The model's end of the parameter interface: parameters, registries of presets and the history of
/// edits, for clients that know them by messages alone.
///
/// Docs/interface.md has the messages. A message runs on its client's thread, one at a time under
/// the connector's lock; what clients are told only goes into their queues, on any thread. The undo
/// lock guards listeners and open steps; it comes behind a registry's locks and before a
/// parameter's. Neither it nor a parameter's lock is held while the host is told of gestures or
/// values.
class CParamInterfaceBase : public CAudioParamUndo {
public:
    CParamInterfaceBase();
    ~CParamInterfaceBase() override;

    /// Joins the connector at the path in `base-connector`. Errors: none there, as the base's.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);
    void releaseLinks() override;

    /// Takes one message. Errors: damaged data, an unknown message, what the message asked for has
    /// failed; the model is as it was then, but for presets of which single values are damaged.
    /// [ui] Through the connector.
    [[nodiscard]] CError* processMessage(CInputStream& message);
    /// Has listeners told what the audio thread changed, which doesn't do so itself. [ui] Likewise
    void deliverUpdates() { getCollector().getUpdates().deliver(); }
    /// A client has gone: ends its gestures and drops its listeners and open steps. [ui] Likewise
    virtual void dropClient(std::uint32_t clientId);
    /// Sends a client, which has lost messages, all states that it listens to. [ui] Likewise
    virtual void restoreClient(std::uint32_t clientId);

protected:
    // Messages, each the event procedure of its name

    [[nodiscard]] virtual CError* onCreateUndoData();
    [[nodiscard]] virtual CError* onRemoveUndoData();
    [[nodiscard]] virtual CError* onSubmitUndoData();
    [[nodiscard]] virtual CError* onRequestUndoHistory();
    [[nodiscard]] virtual CError* onSetUndoHistoryPos();
    [[nodiscard]] virtual CError* onListenParam();
    [[nodiscard]] virtual CError* onUnlistenParam();
    [[nodiscard]] virtual CError* onChangeParam();
    [[nodiscard]] virtual CError* onResetParam();
    [[nodiscard]] virtual CError* onListenRegistry();
    [[nodiscard]] virtual CError* onUnlistenRegistry();
    [[nodiscard]] virtual CError* onSetCurrentProgram();
    [[nodiscard]] virtual CError* onRenamePreset();
    [[nodiscard]] virtual CError* onActivateFactoryPreset();
    [[nodiscard]] virtual CError* onActivatePreset();
    [[nodiscard]] virtual CError* onRequestPreset();
    [[nodiscard]] virtual CError* onRequestBank();
    [[nodiscard]] virtual CError* onSetDefaultPreset();
    [[nodiscard]] virtual CError* onActivateDefaultPreset();
    [[nodiscard]] virtual CError* onExchangeShadowPreset();
    [[nodiscard]] virtual CError* onUpdateShadowPreset();

    /// A gesture on one value begins or ends, for the host; no lock of the model is held.
    virtual void beginParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element);
    virtual void endParamEdit(CAudioParam& param, std::int32_t group, std::int32_t element);
    void onHistoryChanged() override;

    /// The message at work.
    [[nodiscard]] CInputStream& getMessage() const noexcept { return input.get(); }
    /// Sends what was written, and leaves `message` empty. [any]
    void send(std::uint32_t clientId, CWriteSeqBuffer& message);
    /// Sends a message of plain fields. [any]
    template <class... T>
    void sendMessage(std::uint32_t clientId, const char* name, const T&... fields);

private:
    class CParamRecord;
    class CRegistryRecord;

    [[nodiscard]] CAudioParam* findParam(std::uint32_t listenerId) const;
    void beginEdits(std::uint32_t undoId, CAudioParam& param, const CAudioParamChange& change);
    void endEdits(CAudioParamUndoData& step);
    [[nodiscard]] CPtr<CAudioParamUndoData> takeStep(std::uint32_t undoId);
    void changeParam(CAudioParam& param, std::uint32_t undoId, CAudioParamChange& change);
    [[nodiscard]] CError* sendParamState(std::uint32_t listenerId, const CAudioParam& param);
    [[nodiscard]] CError* sendParamChange(std::uint32_t listenerId, const CAudioParam& param,
                                          const CAudioParamChange& change);
    [[nodiscard]] CError* sendHistory(std::uint32_t clientId);

    /// What a message for a registry speaks of.
    struct CRegistryTarget {
        std::uint32_t listenerId = 0;
        CAudioParamRegistry* registry = nullptr;
        CAudioParamRegistry* operator->() const noexcept { return registry; }
    };
    template <class... T>
    [[nodiscard]] CError* readForRegistry(CRegistryTarget& target, T&... fields);
    [[nodiscard]] CError* findRegistry(CRegistryTarget& target);
    [[nodiscard]] CError* runOnRegistry(void (CAudioParamRegistry::*work)());
    [[nodiscard]] CError* sendBankNames(std::uint32_t listenerId, CAudioParamRegistry& registry,
                                        bool isFactory);
    [[nodiscard]] CError* sendRegistryState(std::uint32_t listenerId,
                                            CAudioParamRegistry& registry);

    CTarget<CParamInterfaceBaseConnector*> connector;
    CMessageInput input;
    CMap<std::uint32_t, CAudioParamUndoData*> openUndoData;
    CMap<std::uint32_t, CParamRecord*> paramListeners;
    CMap<std::uint32_t, CRegistryRecord*> registryListeners;
    // Names go out in the order in which they were read; before a registry's locks.
    CCriticalSection namesLock{4000};
};

template <class... T>
void CParamInterfaceBase::sendMessage(std::uint32_t clientId, const char* name, const T&... fields)
{
    CWriteSeqBuffer message;
    // Memory takes whatever fits it.
    if (!handleError(writeFields(message, name, fields...)))
        send(clientId, message);
}

} // namespace tsm
