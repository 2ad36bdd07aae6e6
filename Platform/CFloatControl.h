#pragma once

#include <cstdint>

namespace tsm {

/// Flush-to-zero and denormals-are-zero for a scope: on entry both are switched on unless they are
/// on already, on leaving the caller's control word is back. A host's thread is the host's, so no
/// entry point may leave its floating-point state changed. [any]
class CFloatControl {
public:
    CFloatControl() noexcept;
    ~CFloatControl();
    CFloatControl(const CFloatControl&) = delete;
    CFloatControl& operator=(const CFloatControl&) = delete;

private:
    std::uint32_t saved;
    bool isChanged;
};

} // namespace tsm
