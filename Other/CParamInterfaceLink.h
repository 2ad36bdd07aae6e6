#pragma once

#include "Core/CCheckedObject.h"
#include "Platform/CCriticalSection.h"

#include <memory>

namespace tsm {

class CObject;
class CParamInterfaceBaseConnector;

/// What joins clients to the base connector of an instance, which may end on another thread while
/// they are there: shared by the connector and its clients, so that there is always something to
/// ask whether the connector is.
class CParamInterfaceLink : public CCheckedObject {
public:
    /// The connector for a scope, in which it doesn't end, and no other thread uses it; or null.
    class CUse {
    public:
        /// `used` may be null.
        explicit CUse(const std::shared_ptr<CParamInterfaceLink>& used);
        ~CUse();
        CUse(const CUse&) = delete;
        CUse& operator=(const CUse&) = delete;

        explicit operator bool() const noexcept { return connector; }
        CParamInterfaceBaseConnector* operator->() const noexcept { return connector; }

    private:
        const std::shared_ptr<CParamInterfaceLink> link; // a call may end its client
        CParamInterfaceBaseConnector* connector = nullptr;
    };

    explicit CParamInterfaceLink(CParamInterfaceBaseConnector& target) noexcept;
    ~CParamInterfaceLink() = default;
    CParamInterfaceLink(const CParamInterfaceLink&) = delete;
    CParamInterfaceLink& operator=(const CParamInterfaceLink&) = delete;

    /// The connector's, which is held while it is used.
    [[nodiscard]] CCriticalSection& getLock() noexcept { return lock; }

    /// The connector's tree may be searched by clients of other trees. [setup]
    void open(const CObject& treeRoot);
    /// The connector's tree is going to end. Once it returns, nobody searches the tree or uses the
    /// connector, or will. [control]
    void close();

    /// Keeps trees from ending for a scope, in which a client looks for a connector.
    class CSearch {
    public:
        CSearch();
        ~CSearch();
        CSearch(const CSearch&) = delete;
        CSearch& operator=(const CSearch&) = delete;

        /// Whether the tree with that root, which may have ended, has a connector that is open.
        [[nodiscard]] bool isOpen(const CObject* treeRoot) const noexcept;
    };

private:
    // Order: the search's lock, this one, those of the base.
    CCriticalSection lock{4000};
    CParamInterfaceBaseConnector* connector; // null once it is closed
    // Guarded by the search's lock.
    const CObject* root = nullptr; // null unless it is open
    CParamInterfaceLink* next = nullptr;
};

} // namespace tsm
