#pragma once

#include "Tools/hostlib/CHostContext.h"
#include "Tools/hostlib/CVstInstance.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace tsm {

/// The plug-in that a case looks at: where it lies and, once opened, its module and class.
class CPlugin {
public:
    /// `wantedClass` names a class of the bundle; empty for the first that processes sound. With
    /// `useFewRounds` cases that count on repetition repeat less. `loadingTitles` are those of
    /// parameters whose change may load data.
    CPlugin(std::string bundlePath, std::string wantedClass, bool useFewRounds,
            std::vector<std::string> loadingTitles = {})
        : path(std::move(bundlePath)), className(std::move(wantedClass)), isQuick(useFewRounds),
          loading(std::move(loadingTitles))
    {
    }

    /// The same plug-in, not opened.
    [[nodiscard]] CPlugin copyClosed() const { return {path, className, isQuick, loading}; }

    /// Loads the module. Errors: those of the bundle; no class of that name.
    [[nodiscard]] CError* open();
    /// Unloads it; harmless when it isn't open.
    void close();

    [[nodiscard]] const std::string& getPath() const { return path; }
    [[nodiscard]] int countRounds(int usual, int quick) const { return isQuick ? quick : usual; }

    /// Whether a change of the parameter may load data, on the thread that processes as well.
    [[nodiscard]] bool mayLoad(const CString& title) const
    {
        return std::find(loading.begin(), loading.end(), title.toUtf8().c_str()) != loading.end();
    }

    /// From here on the plug-in must be open.
    [[nodiscard]] const CVstBundle& getBundle() const { return *bundle; }
    [[nodiscard]] Steinberg::IPluginFactory& getFactory() const { return bundle->getFactory(); }
    [[nodiscard]] const CVstClass& getEffect() const { return *effect; }
    [[nodiscard]] CHostContext& getContext() const { return *context; }

    /// An initialised instance. Errors: those of CVstInstance.
    [[nodiscard]] CError* make(CVstInstance& instance) const;
    /// An instance that processes, its buses as the plug-in has them unless `setUp` tells a
    /// channel count. Errors: those of CVstInstance.
    [[nodiscard]] CError* start(CVstInstance& instance, const CVstSetUp& setUp) const;

private:
    std::string path;
    std::string className;
    bool isQuick;
    std::vector<std::string> loading;
    Steinberg::IPtr<CHostContext> context =
        Steinberg::IPtr<CHostContext>::owned(new CHostContext(u"reelpath-conform"));
    std::unique_ptr<CVstBundle> bundle;
    const CVstClass* effect = nullptr;
};

} // namespace tsm
