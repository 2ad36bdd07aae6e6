#include "Tools/bankc/CBankParams.h"

#include "Audio/CAudioParamDef.h"
#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Audio/Converters/CAudioParamConverterGain.h"
#include "Audio/Converters/CAudioParamConverterPercent.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Audio/Converters/CAudioParamConverterText.h"
#include "Audio/Converters/CAudioParamConverterTime.h"

namespace tsm {

namespace {

constexpr CCreatorRow kCreators[] = {
    creatorRow<CObject>("core:object"),
    creatorRow<CAudioParamDef>("audio:param"),
    creatorRow<CAudioParamConverterEnum>("audio:cvt-enum"),
    creatorRow<CAudioParamConverterFreq>("audio:cvt-freq"),
    creatorRow<CAudioParamConverterGain>("audio:cvt-gain"),
    creatorRow<CAudioParamConverterPercent>("audio:cvt-percent"),
    creatorRow<CAudioParamConverterReal>("audio:cvt-real"),
    creatorRow<CAudioParamConverterText>("audio:cvt-text"),
    creatorRow<CAudioParamConverterTime>("audio:cvt-time"),
};

constexpr const char* kBareConverter = "shared::audio.paramcvt.enum";

} // namespace

CError* CBankParams::load(const std::filesystem::path& document)
{
    TSM_TRY(application.start(kCreators, static_cast<int>(std::size(kCreators)), nullptr,
                              CString::fromUtf8(document.string())));
    return nullptr;
}

const CAudioParamInfo* CBankParams::find(const CString& fullName) const
{
    CObject* const found = application.getSharedRoot()->findObject(fullName);
    const auto* const def = dynamic_cast<const CAudioParamDef*>(found);
    return def && def->hasStorage() ? &def->getInfo() : nullptr;
}

CError* CBankParams::describeBare(CAudioParamInfo& info, const CString& fullName,
                                  const CString& minText, const CString& maxText) const
{
    COwnedArray<CString> converters;
    converters.create(kBareConverter);
    info.fullName = fullName;
    TSM_TRY(info.parseConverterNames(*application.getSharedRoot(), converters));
    TSM_TRY(info.parseMinMaxValues(minText, maxText));
    return nullptr;
}

} // namespace tsm
