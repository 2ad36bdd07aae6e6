#pragma once

#include "Audio/CAudioInterfaceClient.h"
#include "Audio/CVizDelivery.h"
#include "Core/CApplication.h"
#include "Tools/monitor/CMonitorConnector.h"
#include "Tools/monitor/CMonitorFrame.h"
#include "Tools/monitor/CMonitorMeter.h"
#include "Tools/monitor/CMonitorParam.h"
#include "Tools/monitor/CMonitorScript.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tsm {

/// A client of an instance, in a tree of its own, that knows it by messages alone: it listens to
/// both meters, to parameters, to the presets, and makes the edits of a script. All on the thread
/// that makes it. It goes before the instance.
class CMonitorClient : private CParamInterfaceRegistryListener {
public:
    /// What the client hears.
    struct CEvents {
        std::function<void(bool isToBase, const std::string& message)> onMessage; // may be empty
        CMonitorMeter::CTell onReading;
        CMonitorMeter::CTellSilence onSilence; // nothing comes from that meter any more
        std::function<void(const CMonitorParam&)> onParam;
        std::function<void()> onHistory;
        std::function<CError*()> onTick; // of the timer, if it is one of the system's
    };

    explicit CMonitorClient(CEvents heard) : events(std::move(heard)) {}
    ~CMonitorClient() override;
    CMonitorClient(const CMonitorClient&) = delete;
    CMonitorClient& operator=(const CMonitorClient&) = delete;

    /// Attaches to the instance with that root, and listens to the parameters of those full names.
    /// With `ticksItself` a timer fetches what comes, that many times a second, while this thread
    /// serves its message queue; else fetch() does. Errors: those of the document, of the base.
    [[nodiscard]] CError* attach(CApplication& application, CObject& instanceRoot,
                                 const std::vector<CString>& paramNames, double framesPerSecond,
                                 bool ticksItself);
    /// Takes in all that the instance has sent. Errors: damaged messages.
    [[nodiscard]] CError* fetch();
    /// Asks for what the meters have measured; they go on at that rate.
    [[nodiscard]] CError* requestReadings(double framesPerSecond);
    /// Makes an edit. Errors: unknown names, texts that aren't values, the base's.
    [[nodiscard]] CError* run(const CMonitorStep& step);

    /// "3/5 Recording gain change": place, count and title of the present state.
    [[nodiscard]] std::string getHistoryText() const;

private:
    void onBankData(bool isFactory, const CString& id, const COwnedArray<CString>& names,
                    std::int32_t currentIndex) override;
    void onPreset(std::uint32_t, const CAudioPreset&) override {}
    void onBank(std::uint32_t, const CAudioPresetBank&) override {}

    [[nodiscard]] CError* loadTree(CApplication& application, double framesPerSecond,
                                   bool ticksItself);
    [[nodiscard]] CError* listen(const std::vector<CString>& paramNames);
    [[nodiscard]] CError* listenMeters();
    [[nodiscard]] CError* edit(const CMonitorStep& step);
    [[nodiscard]] CError* resetToDefault(const CString& name);
    [[nodiscard]] CError* moveInHistory(int by);
    [[nodiscard]] CError* activateFactory(const CString& name);
    [[nodiscard]] CError* findParam(CMonitorParam*& param, const CString& name) const;

    CEvents events;
    CObject* instance = nullptr;
    CMonitorConnector::CWatch watch;
    CTreePtr<CObject> root;                  // before what it refers to
    CAudioInterfaceClient* client = nullptr; // these live in the tree
    CObject* timer = nullptr;
    std::unique_ptr<CVizDelivery> delivery;
    std::vector<std::unique_ptr<CMonitorMeter>> meters;
    std::vector<std::unique_ptr<CMonitorParam>> params;
    std::uint32_t registryId = 0;
    std::vector<CString> factoryNames;
};

} // namespace tsm
