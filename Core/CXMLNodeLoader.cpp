#include "Core/CXMLNodeLoader.h"

#include "Core/CByteOrder.h"
#include "Core/CObject.h"
#include "Core/CTemplateInfo.h"
#include "Core/CText.h"

namespace tsm {
namespace {

constexpr std::uint8_t kPlainNode = 0;
constexpr std::uint8_t kTemplateNode = 1;

} // namespace

CError* CXMLNodeLoader::cutShort() const
{
    TSM_FAIL("@tsmstr_CXMLNodeLoader_cutShort The document is cut short in its nodes.");
}

CError* CXMLNodeLoader::skip(std::size_t count)
{
    if (static_cast<std::size_t>(limit - cursor) < count)
        return cutShort();
    cursor += count;
    return nullptr;
}

CError* CXMLNodeLoader::readU8(std::uint8_t& value)
{
    TSM_TRY(skip(1));
    value = cursor[-1];
    return nullptr;
}

CError* CXMLNodeLoader::readU16(std::uint16_t& value)
{
    TSM_TRY(skip(2));
    value = tsm::readU16(cursor - 2);
    return nullptr;
}

CError* CXMLNodeLoader::readU32(std::uint32_t& value)
{
    TSM_TRY(skip(4));
    value = tsm::readU32(cursor - 4);
    return nullptr;
}

CError* CXMLNodeLoader::readString(const CString*& value)
{
    std::uint16_t index = 0;
    TSM_TRY(readU16(index));
    if (index >= data->getStringCount())
        TSM_FAIL("@tsmstr_CXMLNodeLoader_readString The document names string %1 of %2.",
                 toString(index), toString(data->getStringCount()));
    value = &data->getString(index);
    return nullptr;
}

CError* CXMLNodeLoader::load(CObject& self, const CScope& scope)
{
    if (depth >= kMaxDepth)
        TSM_FAIL("@tsmstr_CXMLNodeLoader_load_Depth The document nests deeper than %1 levels.",
                 toString(kMaxDepth));
    if (scope.skipHeader)
        TSM_TRY(skip(4));
    std::uint8_t kind = 0;
    TSM_TRY(readU8(kind));
    if (kind == kTemplateNode) {
        // It would become a template of the object that is made from it, without end.
        if (scope.skipAttrs || scope.skipChildren)
            TSM_FAIL("@tsmstr_CXMLNodeLoader_load_Body The body of a template is a template.");
        return loadTemplate(self);
    }
    if (kind != kPlainNode)
        TSM_FAIL("@tsmstr_CXMLNodeLoader_load_Kind The document has a node of unknown kind %1.",
                 toString(kind));

    TSM_TRY(loadAttrs(self, scope.skipAttrs));
    if (scope.doInit) {
        TSM_TRY(self.init());
        TSM_TRY(self.initAttrs());
    }
    if (!scope.skipChildren)
        TSM_TRY(loadChildren(self));
    if (scope.doInit) {
        TSM_TRY(self.initChilds());
        self.initState = CObject::EInitState::Complete;
    }
    return nullptr;
}

CError* CXMLNodeLoader::loadAttrs(CObject& self, bool skipAttrs)
{
    std::uint16_t count = 0;
    TSM_TRY(readU16(count));
    if (skipAttrs)
        return skip(std::size_t{4} * count);
    for (int i = 0; i < count; ++i) {
        const CString* key = nullptr;
        const CString* value = nullptr;
        TSM_TRY(readString(key));
        TSM_TRY(readString(value));
        // Documents write every default out. Absent reads as empty and false anyway, so these two
        // only override what a template or the object's maker has set before.
        const bool isDefault = value->isEmpty() || *value == "false";
        if (!isDefault || self.getAttr(*key))
            TSM_TRY(self.setAttr(*key, *value, false));
    }
    return nullptr;
}

CError* CXMLNodeLoader::loadChildren(CObject& self)
{
    std::uint16_t count = 0;
    TSM_TRY(readU16(count));
    ++depth;
    for (int i = 0; i < count; ++i)
        TSM_TRY(loadChild(self));
    --depth;
    return nullptr;
}

CError* CXMLNodeLoader::loadChild(CObject& self)
{
    const CString* tag = nullptr;
    const CString* name = nullptr;
    TSM_TRY(readString(tag));
    TSM_TRY(readString(name));
    CObject* made = nullptr;
    TSM_TRY(self.addChild(made, *tag, *name, false));
    CTreePtr<CObject> child(made);
    TSM_TRY(load(*child, CScope()));
    if (child->templateInfo)
        self.templates[child->getShortName()] = child.get();
    (void)child.release(); // its parent's from here on
    return nullptr;
}

CError* CXMLNodeLoader::loadTemplate(CObject& self)
{
    const CString* tag = nullptr;
    std::uint32_t length = 0;
    TSM_TRY(readString(tag));
    TSM_TRY(readU32(length));
    const std::uint8_t* body = cursor;
    TSM_TRY(skip(length));
    self.templateInfo.reset(new CTemplateInfo(data, *tag, body, cursor));
    TSM_TRY(self.initAttrs());
    TSM_TRY(self.initChilds());
    self.initState = CObject::EInitState::Complete;
    return nullptr;
}

} // namespace tsm
