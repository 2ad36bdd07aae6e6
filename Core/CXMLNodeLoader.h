#pragma once

#include "Core/CXMLData.h"

namespace tsm {

class CObject;

/// Builds objects from the nodes of a compiled document.
///
/// A node is u16 tag, u16 name, u8 kind. Kind 0: u16 attribute count, pairs of u16 key and u16
/// value, u16 child count, the children. Kind 1, a template: u16 class, u32 byte length, a node of
/// that length. Numbers are indices of strings. Nodes nest at most kMaxDepth deep, which bounds the
/// stack; documents of ours stay below twenty.
class CXMLNodeLoader : public CCheckedObject {
public:
    static constexpr int kMaxDepth = 64;

    /// What of a node is read.
    struct CScope {
        bool doInit = true;      // run the object's stages
        bool skipHeader = false; // tag and name stand in front of the cursor
        bool skipAttrs = false;
        bool skipChildren = false;
    };

    /// Reads from `begin` on, never beyond `end`, which lie in `document`.
    CXMLNodeLoader(const CXMLDataRef& document, const std::uint8_t* begin,
                   const std::uint8_t* end) noexcept
        : data(document), cursor(begin), limit(end)
    {
    }

    /// Reads the node at the cursor into `self`. A child whose load fails is destroyed; what has
    /// been built before stays. Errors: damaged data, those of the objects' stages.
    [[nodiscard]] CError* load(CObject& self, const CScope& scope);

private:
    [[nodiscard]] CError* readU8(std::uint8_t& value);
    [[nodiscard]] CError* readU16(std::uint16_t& value);
    [[nodiscard]] CError* readU32(std::uint32_t& value);
    [[nodiscard]] CError* readString(const CString*& value);
    [[nodiscard]] CError* skip(std::size_t count);
    [[nodiscard]] CError* cutShort() const;
    [[nodiscard]] CError* loadAttrs(CObject& self, bool skipAttrs);
    [[nodiscard]] CError* loadChildren(CObject& self);
    [[nodiscard]] CError* loadChild(CObject& self);
    [[nodiscard]] CError* loadTemplate(CObject& self);

    const CXMLDataRef& data;
    const std::uint8_t* cursor;
    const std::uint8_t* limit;
    int depth = 0;
};

} // namespace tsm
