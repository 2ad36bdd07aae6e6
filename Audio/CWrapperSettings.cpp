#include "Audio/CWrapperSettings.h"

#include "Core/CAppData.h"
#include "Core/CAttrValue.h"
#include "Core/CText.h"

namespace tsm {

namespace {

using EStore = CAppData::EStore;

CString readText(EStore store, const char* key, const char* otherwise)
{
    return CAppData::getStore(store).readText(key, otherwise);
}

bool readBool(EStore store, const char* key, const char* otherwise)
{
    return CAttrValue(readText(store, key, otherwise)).asBool();
}

double readScale(const char* key)
{
    double scale = 1.0;
    return parseDouble(readText(EStore::Local, key, "1.0"), scale) ? scale : 1.0;
}

} // namespace

void CWrapperSettings::readEngine()
{
    // What is no number counts as 0, the least level.
    oversamplingLevel = 0;
    if (!parseInt(readText(EStore::Group, "oversampling-level", "1"), oversamplingLevel))
        oversamplingLevel = 0;
    force2ch = readBool(EStore::Group, "force-2ch", "0");
}

void CWrapperSettings::readEditor()
{
    scalesWithScreen = readBool(EStore::Local, "ui-scale-usesr", "true");
    screenScale = readScale("ui-scale2");
    plainScale = readScale("ui-scale");
}

} // namespace tsm
