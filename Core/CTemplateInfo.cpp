#include "Core/CTemplateInfo.h"

#include <cstring>

namespace tsm {

CTemplateInfo::CTemplateInfo(const CXMLDataRef& document, const CString& tag,
                             const std::uint8_t* nodeBegin, const std::uint8_t* nodeEnd)
    : data(document), classTag(tag), body(nodeBegin), bodySize(nodeEnd - nodeBegin)
{
    if (data->getIsInPlace())
        return;
    copy.resize(static_cast<int>(bodySize));
    std::memcpy(copy.data(), nodeBegin, static_cast<std::size_t>(bodySize));
    body = copy.data();
}

} // namespace tsm
