#pragma once

#include "Audio/VST/Interfaces/IAudioProcessor.h"
#include "Audio/VST/Interfaces/IEditController.h"
#include "Audio/VST/Interfaces/IMessage.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"
#include "Tools/hostlib/CHostHandler.h"
#include "Tools/hostlib/CVstBundle.h"

#include <cstdint>
#include <string>

namespace tsm {

/// How an instance is to process.
struct CVstSetUp {
    double rate = 44100.0;
    int maxBlock = 512;
    int channelCount = 2; // of the main buses; 0 leaves all buses as they are
    bool isDouble = true;
    bool isOffline = false;
};

/// One instance of a plug-in, held as hosts do: component, processor and controller, which may be
/// one object, from initialize() to terminate(). The bundle must outlive it.
class CVstInstance {
public:
    CVstInstance() = default;
    ~CVstInstance();
    CVstInstance(const CVstInstance&) = delete;
    CVstInstance& operator=(const CVstInstance&) = delete;

    /// Makes and initialises the objects, connects two of them, and hands the controller its
    /// handler and the component's state. Errors: any step that the plug-in refuses. [control]
    [[nodiscard]] CError* create(const CVstBundle& bundle, const CVstClass& effect,
                                 Steinberg::FUnknown* context);

    [[nodiscard]] Steinberg::Vst::IComponent& getComponent() const { return *component; }
    [[nodiscard]] Steinberg::Vst::IAudioProcessor& getProcessor() const { return *processor; }
    [[nodiscard]] Steinberg::Vst::IEditController& getController() const { return *controller; }
    /// Null when the plug-in has no units.
    [[nodiscard]] Steinberg::Vst::IUnitInfo* getUnits() const { return units.get(); }
    [[nodiscard]] CHostHandler& getHandler() const { return *handler; }

    /// Arranges the buses, activates those that are so by default, sets the processing up.
    /// Errors: sample size or channels that the plug-in refuses. [setup]
    [[nodiscard]] CError* setUp(const CVstSetUp& wanted);
    /// Errors: the plug-in refuses. [setup]
    [[nodiscard]] CError* start();
    /// Harmless when not started. [setup]
    void stop();

    /// Samples; valid from start() on. An endless tail counts as ten seconds.
    [[nodiscard]] int getLatency() const;
    [[nodiscard]] std::int64_t getTail() const;

    /// The component's bytes. Errors: the plug-in refuses. [control], also while sound runs
    [[nodiscard]] CError* getState(std::string& bytes) const;
    /// Gives the bytes to the component and then to the controller; what either has not implemented
    /// is no failure. Errors: the component refuses. [control], also while sound runs
    [[nodiscard]] CError* setState(const std::string& bytes);

private:
    [[nodiscard]] CError* makeComponent(const CVstBundle& bundle, const CVstClass& effect,
                                        Steinberg::FUnknown* context);
    [[nodiscard]] CError* makeController(const CVstBundle& bundle, Steinberg::FUnknown* context);
    void connect();
    void disconnect();
    [[nodiscard]] CError* arrange(int channelCount);
    [[nodiscard]] CError* checkChannels(Steinberg::Vst::BusDirection dir, int channelCount) const;
    void activateBuses();

    CString name;
    Steinberg::IPtr<Steinberg::Vst::IComponent> component;
    Steinberg::IPtr<Steinberg::Vst::IAudioProcessor> processor;
    Steinberg::IPtr<Steinberg::Vst::IEditController> controller;
    Steinberg::IPtr<Steinberg::Vst::IUnitInfo> units;
    Steinberg::IPtr<Steinberg::Vst::IConnectionPoint> componentPoint;
    Steinberg::IPtr<Steinberg::Vst::IConnectionPoint> controllerPoint;
    Steinberg::IPtr<CHostHandler> handler = Steinberg::IPtr<CHostHandler>::owned(new CHostHandler);
    bool hasOwnController = false; // an object beside the component
    bool isStarted = false;
    double rate = 0.0;
};

} // namespace tsm
