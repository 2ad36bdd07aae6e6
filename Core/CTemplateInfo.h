#pragma once

#include "Core/CXMLData.h"

namespace tsm {

/// What a `template` node stands for: the class of its instances and the node that describes them,
/// which is read each time an instance is made.
class CTemplateInfo : public CCheckedObject, public CTsmMemAllocator {
public:
    /// `body` to `bodyEnd` is a complete node of `document`. It is used in place where the
    /// document's data stay, else copied.
    CTemplateInfo(const CXMLDataRef& document, const CString& tag, const std::uint8_t* body,
                  const std::uint8_t* bodyEnd);
    CTemplateInfo(const CTemplateInfo&) = delete;
    CTemplateInfo& operator=(const CTemplateInfo&) = delete;

    [[nodiscard]] const CString& getClassTag() const noexcept { return classTag; }
    [[nodiscard]] const CXMLDataRef& getDocument() const noexcept { return data; }
    [[nodiscard]] const std::uint8_t* getBody() const noexcept { return body; }
    [[nodiscard]] const std::uint8_t* getBodyEnd() const noexcept { return body + bodySize; }

private:
    CXMLDataRef data;
    CString classTag;
    CArray<std::uint8_t, 48> copy;
    const std::uint8_t* body;
    std::int64_t bodySize;
};

} // namespace tsm
