#pragma once

#include "Other/CParamInterfaceClientConnector.h"

namespace tsm {

/// The connector of a client in the same process, which fetches its blocks at the ticks of a timer.
/// Tag `other:param-interface-client-connector-uni`.
///
/// Attributes: `base-connector`, seen from the tree whose root the own root's
/// `BaseConnectorRootPtr` points to (the address of a CObject*), else, or if that has ended, from
/// the own one;
/// `timer-tag`, what makes the timer, an object with the attribute `fps` and the event `tick`;
/// `fps`, its ticks a second.
class CParamInterfaceClientConnectorUni : public CParamInterfaceClientConnector {
public:
    /// Errors: no connector at the path, or it ends. Joining and the instance's end may come
    /// together on two threads.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);
    void removeChild(CObject& child) override;

private:
    [[nodiscard]] CObject& findBaseRoot(const CParamInterfaceLink::CSearch& search) const;
    [[nodiscard]] CError* findLink(std::shared_ptr<CParamInterfaceLink>& target) const;
    [[nodiscard]] CError* onFps(CAttrValue& value);
    [[nodiscard]] CError* onTimer();

    CObject* timer = nullptr;
};

} // namespace tsm
