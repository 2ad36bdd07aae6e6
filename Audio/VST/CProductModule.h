#pragma once

#include "Audio/VST/Interfaces/IPluginFactory.h"

#include <memory>

namespace tsm {
class CApplication;
class CObject;
} // namespace tsm

/// The product's side of the loaded module: the framework, which runs while a host has the module
/// entered and on for as long as an instance is alive, and the factory.
class CProductModule {
public:
    /// Starts the framework, unless instances kept it running. A failure of the definition stands
    /// in the log; the module stays loaded, and instances then refuse to start. [control]
    static void begin();
    /// Gives up this module's hold on the framework. [control]
    static void end();
    /// The running framework, shared with the caller, or null. [any]
    [[nodiscard]] static std::shared_ptr<tsm::CApplication> shareApplication();

    /// A factory as the definition's project object describes the product, with one reference for
    /// the caller; null when the framework doesn't run or the class identifier is not one.
    /// [control]
    [[nodiscard]] static Steinberg::IPluginFactory* makeFactory();
    /// Fills the factory's description of the product. False when the class identifier is not one.
    [[nodiscard]] static bool describe(const tsm::CObject& project,
                                       Steinberg::PFactoryInfo& factory,
                                       Steinberg::PClassInfo2& plugin);
};
