#pragma once

#include "Core/CArray.h"

#include <utility>

namespace tsm {

/// An array of objects, each allocated by itself and owned by the array: an element's address
/// doesn't change when the array grows or others leave.
template <class T>
class COwnedArray : public CCheckedObject {
public:
    /// Walks the objects themselves and not the pointers to them.
    template <class Pointer, class Object>
    class CIterator {
    public:
        explicit CIterator(Pointer at) : place(at) {}
        Object& operator*() const { return **place; }
        CIterator& operator++()
        {
            ++place;
            return *this;
        }
        bool operator==(const CIterator&) const = default;

    private:
        Pointer place;
    };
    using iterator = CIterator<T* const*, T>;
    using const_iterator = CIterator<T* const*, const T>;

    COwnedArray() = default;
    COwnedArray(COwnedArray&& other) noexcept : items(std::move(other.items)) {}
    COwnedArray& operator=(COwnedArray&& other) noexcept
    {
        if (this != &other) {
            clear();
            items = std::move(other.items);
        }
        return *this;
    }
    COwnedArray(const COwnedArray&) = delete;
    COwnedArray& operator=(const COwnedArray&) = delete;
    ~COwnedArray() { clear(); }

    [[nodiscard]] int getCount() const noexcept { return items.getCount(); }
    [[nodiscard]] bool isEmpty() const noexcept { return items.isEmpty(); }
    T& operator[](int index) const noexcept { return *items[index]; }
    T& last() const noexcept { return *items.last(); }
    iterator begin() noexcept { return iterator(items.data()); }
    iterator end() noexcept { return iterator(items.data() + items.getCount()); }
    const_iterator begin() const noexcept { return const_iterator(items.data()); }
    const_iterator end() const noexcept { return const_iterator(items.data() + items.getCount()); }

    /// Appends an object, which the array owns from here on.
    T& add(T* owned) { return *items.add(owned); }
    /// Makes an object in place at the end.
    template <class... Args>
    T& create(Args&&... args)
    {
        return *items.add(new T(std::forward<Args>(args)...));
    }
    void insert(int index, T* owned) { items.insert(index, owned); }
    /// Deletes the object at `index`; the rest closes up.
    void remove(int index) { delete take(index); }
    /// Takes the object at `index` out and hands it to the caller.
    [[nodiscard]] T* take(int index)
    {
        T* object = items[index];
        items.remove(index);
        return object;
    }
    /// The index of the object, or -1.
    [[nodiscard]] int indexOf(const T* object) const noexcept
    {
        return items.indexOf(const_cast<T*>(object));
    }
    /// Deletes all objects, last made first.
    void clear()
    {
        while (!items.isEmpty())
            remove(items.getCount() - 1);
    }

private:
    CArray<T*> items;
};

} // namespace tsm
