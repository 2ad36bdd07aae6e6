#pragma once

#include "Audio/CAudioInterfaceBase.h"
#include "Audio/CAudioInterfaceClient.h"
#include "Audio/CVizDelivery.h"
#include "Other/CParamInterfaceBaseConnector.h"
#include "Tests/Fuzz/CFuzzWrapper.h"

namespace tsm {

/// An instance with one client, which has the number 1, listens to a number, texts, the programs
/// and a meter, and ticks when it is told.
class CFuzzClient : private CParamInterfaceRegistryListener {
public:
    CFuzzClient();
    ~CFuzzClient() override;
    CFuzzClient(const CFuzzClient&) = delete;
    CFuzzClient& operator=(const CFuzzClient&) = delete;

    /// Has the base take a message from the client.
    [[nodiscard]] CError* sendToBase(const std::uint8_t* bytes, std::size_t size);
    /// Puts a message to the client into its queue.
    void sendToClient(const std::uint8_t* bytes, std::size_t size);
    /// Has the client take what waits in its queue.
    [[nodiscard]] CError* tick() { return timer->sendEvent("tick"); }
    /// Ends the process unless client and base understand each other.
    void checkUnderstanding();

    [[nodiscard]] CFuzzWrapper& getWrapper() noexcept { return wrapper; }
    [[nodiscard]] CParamInterfaceBaseConnector& getConnector() noexcept { return *connector; }

    std::uint32_t gain = 0; // numbers of listeners
    std::uint32_t names = 0;
    std::uint32_t programs = 0;

private:
    class CEar;

    void onBankData(bool, const CString&, const COwnedArray<CString>&, std::int32_t) override {}
    void onPreset(std::uint32_t, const CAudioPreset&) override {}
    void onBank(std::uint32_t, const CAudioPresetBank&) override {}
    [[nodiscard]] CError* attach();

    CFuzzWrapper wrapper;
    CObject* instanceRoot = nullptr;
    CPtr<CEar> ear;
    CVizDelivery delivery{0.5, 4.0};
    CTreePtr<CObject> root; // before what it refers to
    CAudioInterfaceBase* base = nullptr;
    CParamInterfaceBaseConnector* connector = nullptr;
    CAudioInterfaceClient* client = nullptr; // these two live in the client's tree
    CObject* timer = nullptr;
    CPtr<CParamMirror> ofGain;
    CPtr<CParamMirror> ofNames;
};

} // namespace tsm
