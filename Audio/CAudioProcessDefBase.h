#pragma once

#include "Audio/CAudioPort.h"
#include "Audio/CAudioProcessDefBaseInit.h"

namespace tsm {

class CAudioProcessBase;

/// A process as a document defines it. One definition may run many times: once for each instance,
/// and where it is stacked once for each channel group.
///
/// The multiband attributes, `is-prototype`, `is-channel-stack` and `is-terminal-whole` are part of
/// the format; processes of one band a group are all that documents ask for.
class CAudioProcessDefBase : public CAudioProcessDefBaseInit {
public:
    /// Errors: a negative index shift.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info)
    {
        CAudioProcessDefBaseInit::declareClass(info);
    }

    /// A new process of this definition's class, without a place yet; owned by the caller.
    [[nodiscard]] virtual CAudioProcessBase* createInstance() const = 0;

    [[nodiscard]] bool getIsSmoothUpdate() const noexcept { return isSmoothUpdate; }
    [[nodiscard]] bool getIsStacked() const noexcept { return isStacked; }
    [[nodiscard]] int getStackIndexShift() const noexcept { return stackIndexShift; }
    [[nodiscard]] const CString& getStackParam() const noexcept { return stackParam; }
    [[nodiscard]] bool getIsTerminalWhole() const noexcept { return isTerminalWhole; }
    /// Left out of the automatic chain; reached by explicit links only.
    [[nodiscard]] bool getIsOutOfOrder() const noexcept { return isOutOfOrder; }
    /// Only there for others to refer to.
    [[nodiscard]] bool getIsPrototype() const noexcept { return isPrototype; }
    /// The state during which the process is absent; -1 for none.
    [[nodiscard]] int getBypassStateId() const noexcept { return bypassStateId; }
    /// Latency-compensating delays start filled with their first sample, not with silence.
    [[nodiscard]] bool getIsCompInput() const noexcept { return isCompInput; }
    [[nodiscard]] EInputCombo getInputCombo() const noexcept { return inputCombo; }
    /// Seconds of the crossfade to a fresh module, as the document has it.
    [[nodiscard]] double getXfadeLength() const noexcept { return xfadeLength; }
    /// A point of the wiring that has no running process.
    [[nodiscard]] bool getIsWiring() const { return getTag() == "audio:modNode"; }

private:
    bool isSmoothUpdate = false;
    bool isStacked = false;
    CString stackParam;
    int stackIndexShift = 0;
    bool isTerminalWhole = false;
    bool isPrototype = false;
    bool isOutOfOrder = false;
    int bypassStateId = -1;
    bool isCompInput = false;
    EInputCombo inputCombo = EInputCombo::Sum;
    double xfadeLength = 0.015;
};

} // namespace tsm
