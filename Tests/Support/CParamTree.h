#pragma once

#include "Audio/CAudioCCTable.h"
#include "Audio/CAudioEnv.h"
#include "Audio/CAudioExtParamList.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamDef.h"
#include "Audio/CAudioParamFilterBypassGroupSoloDef.h"
#include "Audio/CAudioParamFilterBypassOSDef.h"
#include "Audio/CAudioParamRemapDef.h"
#include "Audio/CAudioParamSharedStorage.h"
#include "Audio/CParamListener.h"
#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Audio/Converters/CAudioParamConverterGain.h"
#include "Audio/Converters/CAudioParamConverterPercent.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Audio/Converters/CAudioParamConverterText.h"
#include "Audio/Converters/CAudioParamConverterTime.h"
#include "Core/CMemoryReader.h"
#include "Core/CWriteSeqBuffer.h"
#include "Tests/Support/CByteList.h"
#include "Tests/Support/CTestTree.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tsm {

using CTestAttrs = std::vector<std::pair<const char*, std::string>>;

/// The tags of this layer.
inline const std::initializer_list<CCreatorRow> kParamCreators = {
    creatorRow<CAudioEnv>("audio:audio-env"),
    creatorRow<CAudioParamCollector>("audio:param-collector"),
    creatorRow<CAudioCCTable>("audio:cctable"),
    creatorRow<CAudioExtParam>("audio:ext-param"),
    creatorRow<CAudioExtParamList>("audio:ext-param-list"),
    creatorRow<CAudioParamDef>("audio:param"),
    creatorRow<CAudioParamRemapDef>("audio:param-remap"),
    creatorRow<CAudioParamSharedStorage>("audio:param-shared-storage"),
    creatorRow<CAudioParamFilterBypassOSDef>("audio:param-filter-bypass-os"),
    creatorRow<CAudioParamFilterBypassGroupSoloDef>("audio:param-filter-bypass-group-solo"),
    creatorRow<CAudioParamConverterEnum>("audio:cvt-enum"),
    creatorRow<CAudioParamConverterFreq>("audio:cvt-freq"),
    creatorRow<CAudioParamConverterGain>("audio:cvt-gain"),
    creatorRow<CAudioParamConverterPercent>("audio:cvt-percent"),
    creatorRow<CAudioParamConverterReal>("audio:cvt-real"),
    creatorRow<CAudioParamConverterText>("audio:cvt-text"),
    creatorRow<CAudioParamConverterTime>("audio:cvt-time")};

/// The product's converters in the shared tree, an environment and a collector in the instance's.
class AParamTree : public ATree {
protected:
    void SetUp() override
    {
        start(kParamCreators);
        CObject& audio = make(*application->getSharedRoot(), "core:object", "audio");
        converters = &make(audio, "core:object", "paramcvt");
        definitions = &make(audio, "core:object", "modMain");
        const CTestAttrs onLine = {{"scale-power", "1.0"}, {"scale-threshold", "-1.0"}};
        addConverter("gain", "audio:cvt-gain", onLine, {{"decimals", "1"}});
        addConverter("freq", "audio:cvt-freq", onLine);
        addConverter("text", "audio:cvt-text", {{"is-discrete", "true"}});
        addConverter("real", "audio:cvt-real", {{"decimals", "2"}});
        addConverter("percent", "audio:cvt-percent", {{"label", "%"}});
        addConverter("time", "audio:cvt-time", {{"scale", "0.001"}, {"label", "ms"}});
        addConverter("enum", "audio:cvt-enum", {});
        addConverter("enum-enable", "audio:cvt-enum", {{"state-names", "Off;On"}});

        CObject& plugin = make(*root.get(), "core:object", "plugin");
        env = &make<CAudioEnv>(plugin, "audio:audio-env", "audio-env");
        ASSERT_OK(create(collector, plugin, "audio:param-collector", "param-collector",
                         {{"env", "^audio-env"}}));
    }

    template <class T>
    [[nodiscard]] static CError* create(T*& child, CObject& parent, const char* tag,
                                        const char* name, const CTestAttrs& attrs)
    {
        CAttrMap map;
        for (const auto& [key, value] : attrs)
            map.setText(key, value.c_str());
        return parent.createChild(child, tag, name, false, nullptr, &map);
    }
    void addConverter(const char* name, const char* tag, CTestAttrs attrs,
                      const CTestAttrs& more = {})
    {
        attrs.insert(attrs.end(), more.begin(), more.end());
        CAudioParamConverter* converter = nullptr;
        ASSERT_OK(create(converter, *converters, tag, name, attrs));
    }
    /// A definition; unless told otherwise a stored number from 0 to 100, default 0.
    [[nodiscard]] CError* define(CAudioParamDef*& def, const char* name, const CTestAttrs& attrs)
    {
        CTestAttrs all = {{"converter", "shared::audio.paramcvt.real"},
                          {"min-values", "0"},
                          {"max-values", "100"},
                          {"def-values", "0"},
                          {"is-storable", "true"}};
        all.insert(all.end(), attrs.begin(), attrs.end());
        return create(def, *definitions, "audio:param", name, all);
    }
    const CAudioParamInfo& infoOf(const char* name, const CTestAttrs& attrs)
    {
        CAudioParamDef* def = nullptr;
        EXPECT_OK(define(def, name, attrs));
        return def->getInfo();
    }
    static CTestAttrs converter(const char* name, CTestAttrs more = {})
    {
        more.insert(more.begin(), {"converter", std::string("shared::audio.paramcvt.") + name});
        return more;
    }
    static CTestAttrs textParam(const char* defaults, CTestAttrs more = {})
    {
        more.insert(more.begin(), {{"data-type", "string"}, {"def-values", defaults}});
        return converter("text", more);
    }
    CAudioParam& param(const char* name) { return collector->findOrCreate(fullName(name)); }
    CAudioParam& param(const char* name, const CTestAttrs& attrs)
    {
        CAudioParam& made = param(name);
        made.attachInfo(infoOf(name, attrs));
        return made;
    }
    static CString fullName(const char* name) { return CString("plugin.modMain.") + name; }

    /// What the audio thread does at the beginning of a sub-block.
    void takeChanges()
    {
        {
            CLockScope hold(env->lock);
            collector->takeQueue();
        }
        collector->applyQueue();
    }
    void setProcessing(bool isProcessing)
    {
        CLockScope hold(env->lock);
        env->isProcessing = isProcessing;
    }

    template <class Save>
    static std::vector<std::uint8_t> bytesOf(Save save)
    {
        CWriteSeqBuffer buffer;
        EXPECT_OK(save(buffer));
        CByteBuffer data;
        buffer.takeData(data);
        return {data.data(), data.data() + data.getSize()};
    }
    static std::vector<std::uint8_t> savedBytes(const CAudioParam& from)
    {
        return bytesOf([&](COutputStream& stream) { return from.saveValues(stream); });
    }
    static CError* loadInto(CAudioParam& target, const std::vector<std::uint8_t>& bytes,
                            std::int32_t group = kAllParamGroups)
    {
        CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
        return target.loadValues(reader, group, nullptr, nullptr);
    }

    CObject* converters = nullptr;
    CObject* definitions = nullptr;
    CAudioEnv* env = nullptr;
    CAudioParamCollector* collector = nullptr;
};

/// Writes down what a parameter tells.
class CListenerRecorder : public CParamListener {
public:
    using CHook = std::function<void(CAudioParam&, const CAudioParamChange&)>;
    explicit CListenerRecorder(CHook onChange) : hook(std::move(onChange)) {}
    ~CListenerRecorder() override { attach(nullptr); }
    void onParamChanged(const void* source, CAudioParam& param,
                        const CAudioParamChange& change) override
    {
        lastSource = source;
        hook(param, change);
    }
    const void* lastSource = nullptr;

private:
    CHook hook;
};

} // namespace tsm
