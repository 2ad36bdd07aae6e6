#pragma once

#include "Audio/VST/IPtr.h"
#include "Audio/VST/Interfaces/IPluginFactory.h"
#include "Core/CError.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tsm {

/// What a factory tells of one of its classes; texts are empty where an old factory has none.
struct CVstClass {
    Steinberg::TUID id = {};
    Steinberg::int32 cardinality = 0;
    Steinberg::uint32 flags = 0;
    CString category;
    CString name;
    CString vendor; // the factory's when the class has none
    CString version;
    CString sdkVersion;
    std::vector<CString> subCategories;
};

/// A loaded plug-in bundle: its module from entry to exit, its factory, its classes. Objects made
/// of it must be gone before it.
class CVstBundle {
public:
    CVstBundle() = default;
    ~CVstBundle();
    CVstBundle(const CVstBundle&) = delete;
    CVstBundle& operator=(const CVstBundle&) = delete;

    /// Loads the folder `NAME.vst3` and tells the factory of the host (borrowed, may be null).
    /// Errors: no bundle, no module in it for this machine, what the loader says, missing entry
    /// points, a module or factory that refuses.
    [[nodiscard]] CError* open(const std::filesystem::path& path, Steinberg::FUnknown* host);

    [[nodiscard]] const std::filesystem::path& getPath() const { return folder; }
    [[nodiscard]] Steinberg::IPluginFactory& getFactory() const { return *factory; }
    [[nodiscard]] const Steinberg::PFactoryInfo& getFactoryInfo() const { return factoryInfo; }
    [[nodiscard]] const std::vector<CVstClass>& getClasses() const { return classes; }
    /// The first class that processes sound. Error: there is none.
    [[nodiscard]] CError* findEffect(const CVstClass*& found) const;

    /// The product's bundle, which the build puts beside the folder of its programs.
    [[nodiscard]] static std::filesystem::path defaultPath();
    /// The path of the module in a bundle for this machine.
    [[nodiscard]] static std::filesystem::path modulePath(const std::filesystem::path& bundle);

private:
    [[nodiscard]] CError* load();
    [[nodiscard]] CError* enter();
    void readClasses();

    std::filesystem::path folder;
    void* handle = nullptr;
    bool isEntered = false;
    Steinberg::IPtr<Steinberg::IPluginFactory> factory;
    Steinberg::PFactoryInfo factoryInfo = {};
    std::vector<CVstClass> classes;
};

} // namespace tsm
