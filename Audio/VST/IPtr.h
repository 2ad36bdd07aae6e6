#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

#include <utility>

namespace Steinberg {

/// Holds one reference to an object of the interface.
template <class Interface>
class IPtr {
public:
    IPtr() = default;
    /// Takes a reference of its own; null is allowed.
    explicit IPtr(Interface* object) : held(object)
    {
        if (held)
            held->addRef();
    }
    IPtr(const IPtr& other) : IPtr(other.held) {}
    IPtr(IPtr&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
    IPtr& operator=(IPtr other) noexcept
    {
        std::swap(held, other.held);
        return *this;
    }
    ~IPtr()
    {
        if (held)
            held->release();
    }

    /// Takes over a reference that the caller owns, as of an object just made.
    [[nodiscard]] static IPtr owned(Interface* object)
    {
        IPtr holder;
        holder.held = object;
        return holder;
    }

    void reset() { *this = IPtr(); }
    /// Hands the reference to the caller.
    [[nodiscard]] Interface* take() { return std::exchange(held, nullptr); }
    [[nodiscard]] Interface* get() const { return held; }
    Interface* operator->() const { return held; }
    Interface& operator*() const { return *held; }
    explicit operator bool() const { return held != nullptr; }

private:
    Interface* held = nullptr;
};

/// The object's other interface, or nothing. Some hosts say kResultOk and give null for interfaces
/// of their own: the pointer decides.
template <class Interface, class Source>
[[nodiscard]] IPtr<Interface> queryAs(Source* object)
{
    void* found = nullptr;
    if (!object || object->queryInterface(Interface::iid, &found) != kResultOk)
        return {};
    return IPtr<Interface>::owned(static_cast<Interface*>(found));
}

} // namespace Steinberg
