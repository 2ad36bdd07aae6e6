#pragma once

#include "Audio/CAudioWrapper.h"

#include <vector>

namespace tsm {

/// An instance of the engine whose host is this program: nobody listens to edits, and events reach
/// parameters by an index table of its own, with values in their real form.
class CEngineWrapper : public CAudioWrapper {
public:
    /// Makes the instance with its parameters, which are then set before the format is. Its graph
    /// is built at a rate that is no file's: at the file's every module is made anew, with the
    /// values that were set, so that nothing fades in. Errors: those of the definition. [setup]
    [[nodiscard]] CError* prepare();
    /// The host's rate in Hz, and as many channels in as out, without a side chain. [setup]
    void setFormat(double rate, int channelCount, bool isDouble = true);

    /// Enters a parameter (borrowed) in the table; the result is its index for events. [setup]
    [[nodiscard]] int addEventParam(CAudioParam& param);

    void performEdit(std::int32_t, double) override {}
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}
    /// Sets the value of group 0, element 0. [audio]
    void onParamEvent(const CParamEvent& event) override;

private:
    std::vector<CAudioParam*> eventParams;
};

} // namespace tsm
