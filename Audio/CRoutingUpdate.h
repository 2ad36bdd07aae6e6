#pragma once

#include "Audio/CRoutingState.h"
#include "Audio/CWrapperParams.h"

namespace tsm {

/// Keeps the routing parameters in line with the host's format, until a user has touched them.
/// The caller guards it: one update at a time.
class CRoutingUpdate : public CCheckedObject {
public:
    /// `bound` is borrowed. [setup]
    explicit CRoutingUpdate(const CWrapperParams& bound) noexcept : params(bound) {}

    /// The channels of the host's present format. [control]
    void setChannelNames(CHostChannelNames&& names) { host = std::move(names); }
    [[nodiscard]] const CHostChannelNames& getChannelNames() const noexcept { return host; }
    /// Rewrites the parameters, in one transaction: the caller's, or one of its own. Nothing
    /// happens before the first forced call, which says that the host has chosen a format.
    /// [control]
    void run(bool force, int intChannelCount, const void* source, CAudioParamContext* context);

private:
    class CLocks;

    [[nodiscard]] bool readState(CRoutingState& state) const;
    void writeState(const CRoutingState& state, const void* source,
                    CAudioParamContext& context) const;
    void rewrite(int intChannelCount, const void* source, CAudioParamContext& context) const;

    const CWrapperParams& params;
    CHostChannelNames host;
    bool isPending = false;
};

} // namespace tsm
