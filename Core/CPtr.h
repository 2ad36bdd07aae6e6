#pragma once

#include "Core/CCheckedObject.h"

#include <utility>

namespace tsm {

/// Ends an object by deleting it.
struct CDeleteEnd {
    template <class T>
    static void end(T* object) noexcept
    {
        delete object;
    }
};

/// Owns one object and ends it: deletes it, unless `End` has another way.
template <class T, class End = CDeleteEnd>
class CPtr : public CCheckedObject {
public:
    CPtr() = default;
    explicit CPtr(T* owned) noexcept : object(owned) {}
    CPtr(CPtr&& other) noexcept : object(other.release()) {}
    CPtr& operator=(CPtr&& other) noexcept
    {
        reset(other.release());
        return *this;
    }
    CPtr(const CPtr&) = delete;
    CPtr& operator=(const CPtr&) = delete;
    ~CPtr() { reset(); }

    /// Ends what is held and holds `owned` instead.
    void reset(T* owned = nullptr) noexcept
    {
        T* former = std::exchange(object, owned);
        if (former && former != owned)
            End::end(former);
    }
    /// Hands the object over to the caller.
    [[nodiscard]] T* release() noexcept { return std::exchange(object, nullptr); }

    [[nodiscard]] T* get() const noexcept { return object; }
    T* operator->() const noexcept { return object; }
    T& operator*() const noexcept { return *object; }
    explicit operator bool() const noexcept { return object != nullptr; }

private:
    T* object = nullptr;
};

} // namespace tsm
