#pragma once

#include "Other/CParamInterfaceClientConnectorUni.h"

#include <functional>

namespace tsm {

/// A client's connector that shows what passes through it. Tag `monitor:connector`; the root's
/// attribute `monitor-watch` points to who watches, a CWatch.
class CMonitorConnector : public CParamInterfaceClientConnectorUni {
public:
    /// Gets each message: whether it goes to the base, and its bytes.
    using CWatch = std::function<void(bool isToBase, const CByteBuffer& bytes)>;

    static void declareClass(CObjectClassInfo& info)
    {
        CParamInterfaceClientConnectorUni::declareClass(info);
    }
    /// Errors: as the base class's.
    [[nodiscard]] CError* init() override;

    [[nodiscard]] CError* send(CWriteSeqBuffer& message) override;

protected:
    [[nodiscard]] CError* receive(CInterfaceBlockList& blocks) override;

private:
    const CWatch* watch = nullptr;
};

} // namespace tsm
