#include "Audio/ProductCreators.h"

#include "Audio/CAudioCCTable.h"
#include "Audio/CAudioEnv.h"
#include "Audio/CAudioExtParam.h"
#include "Audio/CAudioExtParamList.h"
#include "Audio/CAudioInterfaceBase.h"
#include "Audio/CAudioInterfaceClient.h"
#include "Audio/CAudioParamAllocDef.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamDef.h"
#include "Audio/CAudioParamFilterBypassGroupSoloDef.h"
#include "Audio/CAudioParamFilterBypassOSDef.h"
#include "Audio/CAudioParamRegistry.h"
#include "Audio/CAudioParamRemapDef.h"
#include "Audio/CAudioParamSharedStorage.h"
#include "Audio/CAudioProcessBypassStateDef.h"
#include "Audio/CAudioProcessDef.h"
#include "Audio/CAudioProcessLinkDef.h"
#include "Audio/CAudioVizCollector.h"
#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Audio/Converters/CAudioParamConverterGain.h"
#include "Audio/Converters/CAudioParamConverterPercent.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Audio/Converters/CAudioParamConverterText.h"
#include "Audio/Converters/CAudioParamConverterTime.h"
#include "Audio/Filters/CAudioFilterFIRLPGen.h"
#include "Audio/Filters/CAudioFilterGenArray.h"
#include "Audio/Filters/CAudioFilterGenArrayItem.h"
#include "Audio/Filters/CAudioFilterHBFGen.h"
#include "Audio/Processes/CModBankedConvolverDef.h"
#include "Audio/Processes/CModBypassDef.h"
#include "Audio/Processes/CModDecimatorDef.h"
#include "Audio/Processes/CModFilterFIRDef.h"
#include "Audio/Processes/CModFilterIIRDef.h"
#include "Audio/Processes/CModGainDef.h"
#include "Audio/Processes/CModInterpolatorDef.h"
#include "Audio/Processes/CModLatencyUniformerDef.h"
#include "Audio/Processes/CModMeterDef.h"
#include "Audio/Processes/CModNodeDef.h"
#include "Audio/Processes/CModOutputDef.h"
#include "Audio/Processes/CModProcessSwitchDef.h"
#include "Audio/Processes/CModReelpathDef.h"
#include "Audio/Processes/CModReelpathPostDef.h"
#include "Audio/Processes/CModResamplerDef.h"
#include "Core/CAttrDoubler.h"
#include "Core/CResourceEntry.h"
#include "Core/CSharedAttribute.h"
#include "Core/CStdEventBridge.h"
#include "Core/CTimerQueued.h"
#include "Other/CFileSetObject.h"
#include "Other/CParamInterfaceBaseConnectorUni.h"
#include "Other/CParamInterfaceClientConnectorUni.h"

namespace tsm {

namespace {

constexpr CCreatorRow kCreators[] = {
    creatorRow<CAttrDoubler>("core:attr-doubler"),
    creatorRow<CObject>("core:object"),
    creatorRow<CSharedAttribute>("core:shared-attribute"),
    creatorRow<CTimerQueued>("core:timer"),
    creatorRow<CFileSetObject>("fileset"),
    creatorRow<CStdEventBridge>("ui:ui-event-bridge"),
    creatorRow<CParamInterfaceBaseConnectorUni>("other:param-interface-base-connector-uni"),
    creatorRow<CParamInterfaceClientConnectorUni>("other:param-interface-client-connector-uni"),

    creatorRow<CAudioEnv>("audio:audio-env"),
    creatorRow<CAudioCCTable>("audio:cctable"),
    creatorRow<CAudioInterfaceBase>("audio:interface-base"),
    creatorRow<CAudioInterfaceClient>("audio:interface-client"),
    creatorRow<CAudioParamConverterEnum>("audio:cvt-enum"),
    creatorRow<CAudioParamConverterFreq>("audio:cvt-freq"),
    creatorRow<CAudioParamConverterGain>("audio:cvt-gain"),
    creatorRow<CAudioParamConverterPercent>("audio:cvt-percent"),
    creatorRow<CAudioParamConverterReal>("audio:cvt-real"),
    creatorRow<CAudioParamConverterText>("audio:cvt-text"),
    creatorRow<CAudioParamConverterTime>("audio:cvt-time"),
    creatorRow<CAudioExtParam>("audio:ext-param"),
    creatorRow<CAudioExtParamList>("audio:ext-param-list"),
    creatorRow<CAudioParamDef>("audio:param"),
    creatorRow<CAudioParamAllocDef>("audio:param-alloc"),
    creatorRow<CAudioParamCollector>("audio:param-collector"),
    creatorRow<CAudioParamFilterBypassGroupSoloDef>("audio:param-filter-bypass-group-solo"),
    creatorRow<CAudioParamFilterBypassOSDef>("audio:param-filter-bypass-os"),
    creatorRow<CAudioParamRegistry>("audio:param-registry"),
    creatorRow<CAudioParamRemapDef>("audio:param-remap"),
    creatorRow<CAudioParamSharedStorage>("audio:param-shared-storage"),
    creatorRow<CAudioVizCollector>("audio:viz-collector"),

    creatorRow<CAudioFilterFIRLPGen>("audio:fltgen-firlp"),
    creatorRow<CAudioFilterGenArray>("audio:fltgen-array"),
    creatorRow<CAudioFilterGenArrayItem>("audio:fltgen-array-item"),
    creatorRow<CAudioFilterHBFGen>("audio:fltgen-hbf"),

    creatorRow<CAudioProcessBypassStateDef>("audio:process-bypass-state"),
    creatorRow<CAudioProcessDef>("audio:process-def"),
    creatorRow<CAudioProcessLinkDef>("audio:process-link"),
    creatorRow<CModBankedConvolverDef>("audio:modBankedConvolver"),
    creatorRow<CModBypassDef>("audio:modBypass"),
    creatorRow<CModDecimatorDef>("audio:modDecimator"),
    creatorRow<CModFilterFIRDef>("audio:modFilterFIR"),
    creatorRow<CModFilterIIRDef>("audio:modFilterIIR"),
    creatorRow<CModGainDef>("audio:modGain"),
    creatorRow<CModInterpolatorDef>("audio:modInterpolator"),
    creatorRow<CModLatencyUniformerDef>("audio:modLatencyUniformer"),
    creatorRow<CModMeterDef>("audio:modMeter"),
    creatorRow<CModNodeDef>("audio:modNode"),
    creatorRow<CModOutputDef>("audio:modOutput"),
    creatorRow<CModProcessSwitchDef>("audio:modProcessSwitch"),
    creatorRow<CModReelpathDef>("audio:modReelpath"),
    creatorRow<CModReelpathPostDef>("audio:modReelpathPost"),
    creatorRow<CModResamplerDef>("audio:modResampler"),
};

} // namespace

std::span<const CCreatorRow> productCreators() noexcept
{
    return kCreators;
}

CError* startProduct(CApplication& application)
{
    const std::span<const CCreatorRow> creators = productCreators();
    return application.start(creators.data(), static_cast<int>(creators.size()), kResourceTable,
                             "SharedData.xml");
}

} // namespace tsm
