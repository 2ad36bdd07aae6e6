#pragma once

#include "Core/CByteBuffer.h"
#include "Core/CDataSet.h"
#include "Core/CMap.h"
#include "Core/COutputStream.h"
#include "Core/CString.h"

#include <cstdint>

namespace tsm {

/// A store of named binary items, each with an id by which it is found. Filled once, then read only
/// and so open to any thread.
class CFileSet : public CDataSet {
public:
    /// One item. Its data lie in the stream's memory where that stays, else in the item.
    class CItem {
    public:
        [[nodiscard]] std::uint32_t getId() const noexcept { return id; }
        [[nodiscard]] const CString& getName() const noexcept { return name; }
        [[nodiscard]] const std::uint8_t* getData() const noexcept
        {
            return outside ? outside : owned.data();
        }
        [[nodiscard]] int getSize() const noexcept { return size; }

    private:
        friend class CFileSet;
        std::uint32_t id = 0;
        std::int32_t size = 0;
        CString name;
        const std::uint8_t* outside = nullptr;
        CByteBuffer owned;
    };

    CFileSet() = default;
    CFileSet(const CFileSet&) = delete;
    CFileSet& operator=(const CFileSet&) = delete;

    /// Reads a set in place of what is here; another version than 1 gives an empty one. Data in
    /// memory that stays aren't copied. Errors: cut data, too long a name; the set then keeps what
    /// it had. [setup]
    [[nodiscard]] CError* loadFrom(CPosInputStream& stream) override;
    /// Writes the items in order of their ids. [setup]
    [[nodiscard]] CError* writeTo(COutputStream& stream) const;
    /// Copies an item in, in place of one with the same id. [setup]
    void add(std::uint32_t id, const CString& name, const CByteBuffer& data);

    [[nodiscard]] int getCount() const noexcept { return itemsById.getCount(); }
    /// The item of an id, or null. [any]
    [[nodiscard]] const CItem* find(std::uint32_t id) const noexcept;
    /// The item at `index` (0 to count - 1) in the order of names, capitals before small letters.
    /// [any]
    [[nodiscard]] const CItem& getByName(int index) const noexcept { return *itemsByName[index]; }

private:
    [[nodiscard]] CError* loadItems(CPosInputStream& stream);
    [[nodiscard]] CError* loadItem(CPosInputStream& stream);
    [[nodiscard]] static CError* loadData(CPosInputStream& stream, CItem& item);
    CItem& enter(std::uint32_t id);
    void sortNames();

    CMap<std::uint32_t, CItem> itemsById;
    CArray<const CItem*> itemsByName;
};

} // namespace tsm
