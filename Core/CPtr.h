#pragma once

#include "Core/CCheckedObject.h"

#include <utility>

namespace tsm {

/// Owns one object and deletes it.
template <class T>
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
    ~CPtr() { delete object; }

    /// Deletes what is held and holds `owned` instead.
    void reset(T* owned = nullptr) noexcept
    {
        T* former = std::exchange(object, owned);
        if (former != owned)
            delete former;
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
