#pragma once

#include "Audio/CAudioExtParamHostBridge.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CParamTap.h"
#include "Core/CObject.h"

#include <atomic>

namespace tsm {

/// A parameter as the host sees it: one number between 0 and 1 with a short name. Tag
/// `audio:ext-param`.
///
/// A change that somebody else makes is told to the host, on the thread of the change and with no
/// lock held, unless the value is the one that the host has already. A value that the host writes
/// counts as told: a later change back to what was before is news to it.
class CAudioExtParam : public CObject, public CParamTap {
public:
    static constexpr int kMaxNameLength = 7;

    ~CAudioExtParam() override;
    /// Finds the collector and the parameter. Errors: no collector, a name of another length than 1
    /// to kMaxNameLength, a place that no parameter has.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

    [[nodiscard]] const CString& getExtName() const noexcept { return extName; }
    [[nodiscard]] std::int32_t getGroup() const noexcept { return group; }
    [[nodiscard]] std::int32_t getElement() const noexcept { return element; }
    [[nodiscard]] CAudioParam& getParam() const noexcept { return *param; }
    [[nodiscard]] std::int32_t getIndex() const noexcept { return index; }

    /// Names whom changes are told, and as which parameter; null for nobody. The bridge outlives
    /// what is pending in the collector. [setup]
    void setHostBridge(CAudioExtParamHostBridge* bridge, std::int32_t hostIndex);

    /// The value that host and engine agree on. [any] No lock.
    [[nodiscard]] double normalized() const noexcept { return lastValue.load(); }
    /// The definition's value; 0 while the parameter has no description. [any]
    [[nodiscard]] double defaultNormalized() const;
    /// The host's write, 0 to 1; what is outside is brought inside. False, and nothing happens, for
    /// what is no finite number. [any] On the audio thread: takes the parameter's locks, the
    /// environment's and the notification lock, and allocates from the block allocator only.
    bool setNormalized(double value);

    /// The text of a normalized value, brought inside 0 to 1; empty while the parameter has no
    /// description. [any]
    [[nodiscard]] CString valueText(double normalizedValue) const;
    /// Reads a text as the user would type it. False for what is none, and `value` is left alone.
    /// [any]
    [[nodiscard]] bool parseText(const CString& text, double& value) const;

    void onChangeMade(const void* source, const CAudioParam& changed,
                      const CAudioParamChange& change) override;

private:
    [[nodiscard]] bool isNumber() const;
    [[nodiscard]] bool concerns(const CAudioParamChange& change) const;
    [[nodiscard]] double toNormalized(double real) const;
    [[nodiscard]] double readModel() const;
    void update();

    CString extName;
    std::int32_t group = 0;
    std::int32_t element = 0;
    CTarget<CAudioParamCollector*> collector;
    CAudioParam* param = nullptr;

    // Written under the parameter's lock.
    CAudioExtParamHostBridge* hostBridge = nullptr;
    std::int32_t index = 0;
    std::atomic<double> lastValue = 0.0;
    // What the parameter's value gave when `lastValue` was set: a host's value between two states
    // of a discrete parameter isn't what that reads as.
    double lastModel = 0.0;
};

} // namespace tsm
