#include "Audio/CProductData.h"

#include "Core/CText.h"

namespace tsm {

namespace {

/// Digits alone: neither signs nor the forms of other bases belong into a version.
bool parseVersionPart(const CString& text, std::int32_t& out)
{
    constexpr int kMaxDigits = 9; // what fits in 32 bits whatever the digits
    if (text.isEmpty() || text.getLength() > kMaxDigits)
        return false;
    out = 0;
    for (int i = 0; i < text.getLength(); ++i) {
        const int digit = text.at(i) - '0';
        if (digit < 0 || digit > 9)
            return false;
        out = out * 10 + digit;
    }
    return true;
}

} // namespace

CError* CProductData::read(const CObject& project)
{
    TSM_TRY(readNames(project));
    TSM_TRY(readCounts(project));
    TSM_TRY(acquirePluginCode(project.getAttrString("plugin-code")));
    TSM_TRY(parseVersion(project.getAttrString("app-version")));
    readTail(project);
    return nullptr;
}

CError* CProductData::readNames(const CObject& project)
{
    pluginName = project.getAttrString("app-name");
    if (pluginName.isEmpty())
        TSM_FAIL("@tsmstr_CAudioWrapper_init_PluginNameEmpty Plug-in name is empty.");
    vendorName = project.getAttrString("app-vendor");
    if (vendorName.isEmpty())
        TSM_FAIL("@tsmstr_CAudioWrapper_init_VendorNameEmpty Vendor name is empty.");
    return nullptr;
}

CError* CProductData::readCounts(const CObject& project)
{
    intChannelCount = project.getAttrInt("plugin-intchannel-count");
    if (intChannelCount < 1 || intChannelCount > 16)
        TSM_FAIL("@tsmstr_CAudioWrapper_init_InvalidIntChannelCount "
                 "Invalid 'plugin-intchannel-count' attribute value.");
    groupCount = project.getAttrInt("plugin-group-count");
    if (groupCount < 1 || groupCount > 8)
        TSM_FAIL("@tsmstr_CAudioWrapper_init_InvalidGroupCount "
                 "Invalid 'plugin-group-count' attribute value.");
    return nullptr;
}

CError* CProductData::acquirePluginCode(const CString& text)
{
    bool isValid = text.getLength() == 4;
    pluginCode = 0;
    for (int i = 0; isValid && i < 4; ++i) {
        isValid = text.at(i) <= 0xff;
        pluginCode = pluginCode << 8 | text.at(i);
    }
    if (!isValid)
        TSM_FAIL("@tsmstr_CAudioWrapper_acquirePluginCode_PluginCodeError "
                 "Invalid plug-in code in string '%1'.",
                 text);
    return nullptr;
}

CError* CProductData::parseVersion(const CString& text)
{
    COwnedArray<CString> parts;
    splitText(text, '.', parts);
    versionBuild = 0;
    const bool isValid = parts.getCount() >= 2 && parts.getCount() <= 3 &&
                         parseVersionPart(parts[0], versionMajor) &&
                         parseVersionPart(parts[1], versionMinor) &&
                         (parts.getCount() == 2 || parseVersionPart(parts[2], versionBuild));
    if (!isValid)
        TSM_FAIL("@tsmstr_CAudioWrapper_parseVersion_InvalidVersion "
                 "Invalid version specification in string '%1'.",
                 text);
    return nullptr;
}

void CProductData::readTail(const CObject& project)
{
    constexpr double kUnreadableTail = 0.4;
    const CAttrValue* value = project.getAttr("plugin-tail");
    hasTail = value && !value->asString().isEmpty();
    tailSeconds = 0.0;
    if (hasTail && !value->toDouble(tailSeconds))
        tailSeconds = kUnreadableTail;
}

void CProductSwitches::read(const CObject& project)
{
    useSidechain = project.getAttrBool("use-sidechain");
    isVizAlwaysActive = project.getAttrBool("is-viz-always-active");
    isSymmetricIO = project.getAttrBool("is-symmetric-io");
    useHostBPM = project.getAttrBool("use-host-bpm");
    useHostRecording = project.getAttrBool("use-host-recording");
    useRouting = project.getAttrBool("use-routing");
    useMidSide = useRouting && project.getAttrBool("use-mid-side");
    useWindowResizing = project.getAttrBool("use-window-resizing");
    autoRtMode = project.getAttrInt("auto-oversampling-rtmode");
}

} // namespace tsm
