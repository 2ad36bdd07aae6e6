#include "Audio/CAudioProcessLinkDef.h"

#include "Core/CText.h"

namespace tsm {
namespace {

enum class EEndFault { None, Port, Name };

EEndFault parseEnd(const CString& text, CAudioProcessLinkDef::CEnd& end)
{
    const int slash = text.find('/');
    end.name = slash < 0 ? text : text.substring(0, slash);
    end.port = 0;
    if (slash >= 0 && (!parseWholeInt(text.substring(slash + 1), end.port) || end.port < 0))
        return EEndFault::Port;
    return end.name.isEmpty() ? EEndFault::Name : EEndFault::None;
}

} // namespace

CError* CAudioProcessLinkDef::init()
{
    TSM_TRY(CObject::init());
    const CString& src = getAttrString("src");
    if (src.isEmpty())
        TSM_FAIL("@tsmstr_CAudioProcessLinkDef_init_NoSrc No 'src' attribute defined.");
    const CString& dst = getAttrString("dst");
    if (dst.isEmpty())
        TSM_FAIL("@tsmstr_CAudioProcessLinkDef_init_NoDst No 'dst' attribute defined.");

    const EEndFault srcFault = parseEnd(src, source);
    if (srcFault == EEndFault::Port)
        TSM_FAIL("@tsmstr_CAudioProcessLinkDef_init_SrcPortError "
                 "Invalid port in the 'src' attribute value '%1' specified.",
                 src);
    if (srcFault == EEndFault::Name)
        TSM_FAIL("@tsmstr_CAudioProcessLinkDef_init_SrcNameError "
                 "Invalid process in the 'src' attribute value '%1' specified.",
                 src);
    const EEndFault dstFault = parseEnd(dst, destination);
    if (dstFault == EEndFault::Port)
        TSM_FAIL("@tsmstr_CAudioProcessLinkDef_init_DstPortError "
                 "Invalid port in the 'dst' attribute value '%1' specified.",
                 dst);
    if (dstFault == EEndFault::Name)
        TSM_FAIL("@tsmstr_CAudioProcessLinkDef_init_DstNameError "
                 "Invalid process in the 'dst' attribute value '%1' specified.",
                 dst);
    readBypassStates();
    return readState();
}

void CAudioProcessLinkDef::readBypassStates()
{
    COwnedArray<CString> words;
    splitWords(getAttrString("bypass-state-id"), words);
    for (const CString& word : words) {
        std::int32_t id = 0;
        if (parseWholeInt(word, id) && id >= 0)
            bypassStateIds.add(id);
    }
}

CError* CAudioProcessLinkDef::readState()
{
    const CString& text = getAttrString("state-id");
    if (!text.isEmpty() && !parseWholeInt(text, stateId))
        stateId = -1;
    if (stateId < -1)
        TSM_FAIL("@tsmstr_CAudioProcessLinkDef_init_StateError "
                 "Invalid state identifier '%1' specified.",
                 text);
    return nullptr;
}

} // namespace tsm
