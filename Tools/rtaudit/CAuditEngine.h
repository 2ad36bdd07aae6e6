#pragma once

#include "Core/CApplication.h"
#include "Tools/engine/CEngineWrapper.h"
#include "Tools/rtaudit/CAuditCounts.h"
#include "Tools/rtaudit/CSymbolNames.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tsm {

class CAudioVizCollector;

/// An instance whose events also run work of its maker's, as code inside of the engine would.
class CAuditWrapper : public CEngineWrapper {
public:
    static constexpr std::int32_t kWorkEvent = -1;

    void onParamEvent(const CParamEvent& event) override;

    std::function<void()> work;
};

/// An instance of the product that plays loud noise in stereo, block by block, on the calling
/// thread, which is the audio thread and the control thread in turn.
class CAuditEngine {
public:
    static constexpr int kRate = 44100;

    /// Errors: those of the definition. The product is started and ended with this object.
    [[nodiscard]] CError* start(int hostBlock);
    ~CAuditEngine();

    /// One host block, counted where `counts` isn't null. [audio]
    void process(CAuditCounts* counts);
    /// Blocks enough for everything that is under way to end. [audio]
    void settle();

    [[nodiscard]] int getBlockSize() const noexcept { return blockSize; }

    // The control side, between blocks

    /// Whether the product has a class for that tag of the definition.
    [[nodiscard]] bool hasTag(const char* tag) const { return application.findCreator(tag); }
    /// Parameters go by their names relative to the main process. An unknown one is passed over.
    void set(const char* name, double real);
    /// A change by the host's automation, in the middle of the next block.
    void queue(const char* name, double real);
    void selectProgram(int index);
    /// Watches both meters, or no longer.
    void watchMeters(bool isWatched);
    /// Takes away what the meters have sent, as a window does.
    void takeMeterData();
    /// Stops, changes rate and channels, starts.
    void setFormat(int channels, double rate);

    [[nodiscard]] CAudioWrapper& getWrapper() { return *wrapper; }
    /// Has `work` run inside of the next block. [control]
    void runInside(std::function<void()> work);
    /// Whose lock that is: the class of the object of the instance's tree that it lies in,
    /// "a parameter", "the wrapper", or else the class whose code took it.
    [[nodiscard]] std::string lockOwner(const CLockCounts& lock) const;

private:
    [[nodiscard]] CAudioParam* find(const char* name) const;

    CApplication application;
    CSymbolNames symbols;
    std::unique_ptr<CAuditWrapper> wrapper;
    CAudioVizCollector* vizCollector = nullptr; // the wrapper's
    bool isWatching = false;
    std::vector<double> noise;
    std::vector<double> out;
    int blockSize = 0;
    std::size_t position = 0;
};

} // namespace tsm
