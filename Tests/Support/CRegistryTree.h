#pragma once

#include "Audio/CAudioInterfaceBase.h"
#include "Audio/CAudioParamRegistry.h"
#include "Audio/CRegistryListener.h"
#include "Other/CParamInterfaceBaseConnectorUni.h"
#include "Tests/Support/CParamTree.h"

#include <map>

namespace tsm {

/// A few parameters of each kind below plugin.modMain, an undo history, and a master registry of
/// what stands there.
class ARegistryTree : public AParamTree {
protected:
    void SetUp() override
    {
        AParamTree::SetUp();
        ASSERT_OK(
            application->registerCreator(creatorRow<CAudioInterfaceBase>("audio:interface-base")));
        ASSERT_OK(
            application->registerCreator(creatorRow<CAudioParamRegistry>("audio:param-registry")));
        ASSERT_OK(application->registerCreator(
            creatorRow<CParamInterfaceBaseConnectorUni>("test:base-connector")));
        plugin = root->findObject("plugin");
        make(*plugin, "test:base-connector", "interface-base-connector");
        ASSERT_OK(create(undo, *plugin, "audio:interface-base", "interface-base",
                         {{"param-collector", "plugin.param-collector"},
                          {"base-connector", "^interface-base-connector"},
                          {"undo-count-max", "32"}}));
        gain = &param("gain", {{"def-values", "50"}});
        mode = &param("mode", {{"is-single-group", "true"}, {"is-single-element", "true"}});
        labels = &param("io.labels",
                        textParam("L,R", {{"is-storable", "true"}, {"is-single-group", "true"}}));
        bypass = &param("bypass", {{"is-persistent", "true"}, {"is-single-group", "true"}});
        meter = &param("meter", {{"is-storable", "false"}, {"is-global", "true"}});
        presetName = &param("preset-name", textParam("Default", {{"is-storable", "true"},
                                                                 {"is-single-group", "true"},
                                                                 {"is-single-element", "true"}}));
        groupNames =
            &param("group-names",
                   textParam("Front,Rear", {{"is-storable", "true"}, {"is-single-group", "true"}}));
        // Definitions are found by path, and a name with a point is a path.
        for (CAudioParam* each : {gain, mode, labels, bypass, meter, presetName, groupNames})
            ASSERT_NE(each->getInfo(), nullptr);
    }
    void makeRegistry(CTestAttrs more = {}) { ASSERT_OK(tryRegistry("param-registry", more)); }
    [[nodiscard]] CError* tryRegistry(const char* name, const CTestAttrs& more)
    {
        CTestAttrs attrs = {{"hierarchy", "plugin.modMain"},
                            {"id", "test"},
                            {"is-master", "true"},
                            {"preset-naming", "Test preset"},
                            {"def-name-remap", "plugin=audio"},
                            {"preset-name-param", "plugin.modMain.preset-name"},
                            {"group-names-param", "plugin.modMain.group-names"},
                            {"param-collector", "plugin.param-collector"},
                            {"param-undo", "plugin.interface-base"}};
        attrs.insert(attrs.end(), more.begin(), more.end());
        return create(registry, *plugin, "audio:param-registry", name, attrs);
    }

    /// The bytes of the values as they are.
    std::vector<std::uint8_t> state(std::int32_t group = -1)
    {
        return bytesOf([&](COutputStream& stream) {
            return registry->acquirePreset(false, -1, group, stream);
        });
    }
    [[nodiscard]] CError* activate(const std::vector<std::uint8_t>& bytes, bool partial = false,
                                   std::int32_t group = -1, bool includePersistent = false)
    {
        CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
        return registry->activatePreset(reader, partial, group, includePersistent);
    }
    /// The bytes of a preset with one number each for these parameters of one group.
    static std::vector<std::uint8_t> presetBytes(const std::string& name,
                                                 const std::map<std::string, double>& values)
    {
        CByteList list;
        list.text(name).u32(static_cast<std::uint32_t>(values.size()));
        for (const auto& [key, value] : values)
            list.text(key)
                .u32(static_cast<std::uint32_t>(4 + 14 + key.size() + 28))
                .text("audio.modMain." + key)
                .u32(1)
                .u32(1)
                .u32(0)
                .u32(1)
                .u32(1)
                .f64(std::bit_cast<std::uint64_t>(value));
        return list.bytes;
    }
    std::vector<std::string> steps()
    {
        COwnedArray<CString> names;
        std::int32_t position = 0;
        undo->getHistory(names, position);
        std::vector<std::string> texts;
        for (const CString& name : names)
            texts.push_back(name.toUtf8());
        texts.push_back("at " + std::to_string(position));
        return texts;
    }
    static std::string textOf(const CAudioParam& param, int element = 0)
    {
        return param.text(0, element).toUtf8();
    }
    /// One step with one change.
    void edit(CAudioParam& target, double value, const char* title = "edit", int group = 0)
    {
        CPtr<CAudioParamUndoData> step(new CAudioParamUndoData(title));
        CAudioParamContext context;
        context.undo = step.get();
        target.setValue(group, 0, value, nullptr, &context);
        undo->commit(std::move(step));
    }

    CObject* plugin = nullptr;
    CAudioInterfaceBase* undo = nullptr;
    CAudioParamRegistry* registry = nullptr;
    CAudioParam* gain = nullptr;       // stored, a value for each group
    CAudioParam* mode = nullptr;       // stored, one value
    CAudioParam* labels = nullptr;     // stored texts, in a folder of their own
    CAudioParam* bypass = nullptr;     // persistent
    CAudioParam* meter = nullptr;      // in no preset
    CAudioParam* presetName = nullptr; // stored
    CAudioParam* groupNames = nullptr; // stored
};

} // namespace tsm
