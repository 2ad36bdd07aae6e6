#pragma once

#include "Core/CError.h"
#include "Core/COwnedArray.h"

#include <cstddef>
#include <cstdint>

namespace tsm {

class CInputStream;
class CPosInputStream;

/// A compiled definition document in memory: its strings, and where its root node lies.
///
/// Layout, little-endian: u32 string count N; u32 bytes of offset table and pool together; u32 x N
/// offsets of the strings, counted from the table's begin; the pool of zero-terminated UTF-8
/// strings; the root node. String 0 is the empty one. All counts and offsets are checked against
/// the size of the data, so that a damaged document gives an error and no read outside of it.
///
/// Counted: each template that is made from the document holds a reference, so the strings live as
/// long as any template.
class CXMLData : public CCheckedObject, public CTsmMemAllocator {
public:
    CXMLData(const CXMLData&) = delete;
    CXMLData& operator=(const CXMLData&) = delete;

    /// Reads a document; on success `data` has one reference, which the caller ends by `release`.
    /// Memory that lies in place (an embedded resource) is used where it is and must stay.
    /// Errors: those of the stream, a damaged document. [setup|control]
    [[nodiscard]] static CError* load(CXMLData*& data, CPosInputStream& stream);

    void addReference() noexcept { ++references; }
    void release() noexcept;

    [[nodiscard]] int getStringCount() const noexcept { return strings.getCount(); }
    /// `index` is below the string count.
    [[nodiscard]] const CString& getString(int index) const noexcept { return strings[index]; }
    /// The node data: begin and end.
    [[nodiscard]] const std::uint8_t* getNodes() const noexcept { return nodes; }
    [[nodiscard]] const std::uint8_t* getNodesEnd() const noexcept { return nodesEnd; }
    /// True when the node data outlive this object, so that templates may point into them.
    [[nodiscard]] bool getIsInPlace() const noexcept { return isInPlace; }

private:
    CXMLData() = default;
    ~CXMLData();
    [[nodiscard]] CError* loadInPlace(const std::uint8_t* data, std::size_t size);
    [[nodiscard]] CError* loadCopy(CPosInputStream& stream, std::size_t size);
    [[nodiscard]] CError* decodeStrings(const std::uint8_t* table, std::uint32_t count,
                                        std::uint32_t tableSize);

    int references = 1;
    COwnedArray<CString> strings;
    std::uint8_t* ownedNodes = nullptr;
    const std::uint8_t* nodes = nullptr;
    const std::uint8_t* nodesEnd = nullptr;
    bool isInPlace = false;
};

/// Holds one reference on a document.
class CXMLDataRef : public CCheckedObject {
public:
    CXMLDataRef() = default;
    /// Takes over a reference that the caller holds.
    explicit CXMLDataRef(CXMLData* held) noexcept : data(held) {}
    CXMLDataRef(const CXMLDataRef& other) noexcept : data(other.data)
    {
        if (data)
            data->addReference();
    }
    CXMLDataRef& operator=(const CXMLDataRef&) = delete;
    ~CXMLDataRef()
    {
        if (data)
            data->release();
    }
    CXMLData* operator->() const noexcept { return data; }
    CXMLData& operator*() const noexcept { return *data; }

private:
    CXMLData* data = nullptr;
};

} // namespace tsm
