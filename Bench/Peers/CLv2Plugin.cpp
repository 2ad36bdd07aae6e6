#include "Bench/Peers/CLv2Plugin.h"

#include <lv2/core/lv2.h>

#include <cmath>
#include <stdexcept>

namespace tsm {

namespace {

LilvWorld* makeWorld()
{
    LilvWorld* world = lilv_world_new();
    lilv_world_load_all(world);
    return world;
}

const LilvPlugin* findPlugin(LilvWorld* world, const std::string& uri)
{
    LilvNode* node = lilv_new_uri(world, uri.c_str());
    const LilvPlugin* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), node);
    lilv_node_free(node);
    return plugin;
}

/// Whether a port has a class of the LV2 core.
bool isA(LilvWorld* world, const LilvPlugin* plugin, const LilvPort* port, const char* className)
{
    LilvNode* node = lilv_new_uri(world, className);
    const bool isMatch = lilv_port_is_a(plugin, port, node);
    lilv_node_free(node);
    return isMatch;
}

int countAudio(LilvWorld* world, const LilvPlugin* plugin, const char* direction)
{
    int count = 0;
    for (unsigned i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
        const LilvPort* port = lilv_plugin_get_port_by_index(plugin, i);
        count +=
            isA(world, plugin, port, LV2_CORE__AudioPort) && isA(world, plugin, port, direction);
    }
    return count;
}

} // namespace

bool CLv2Plugin::isInstalled(const std::string& uri)
{
    const std::unique_ptr<LilvWorld, CEnd> world(makeWorld());
    const LilvPlugin* plugin = findPlugin(world.get(), uri);
    return plugin && countAudio(world.get(), plugin, LV2_CORE__InputPort) == 2 &&
           countAudio(world.get(), plugin, LV2_CORE__OutputPort) == 2;
}

CLv2Plugin::CLv2Plugin(const std::string& uri, double rate, int maxBlock) : world(makeWorld())
{
    const LilvPlugin* plugin = findPlugin(world.get(), uri);
    const LV2_Feature* const noFeatures[] = {nullptr};
    instance.reset(plugin ? lilv_plugin_instantiate(plugin, rate, noFeatures) : nullptr);
    if (!instance)
        throw std::runtime_error("can't make an instance of " + uri);
    connect(plugin);
    lilv_instance_activate(instance.get());
    // Ports that are left unconnected until the first block would be read before.
    std::vector<float> silence(static_cast<std::size_t>(maxBlock));
    float* const two[] = {silence.data(), silence.data()};
    process(two, two, maxBlock);
}

CLv2Plugin::~CLv2Plugin()
{
    lilv_instance_deactivate(instance.get());
}

void CLv2Plugin::connect(const LilvPlugin* plugin)
{
    const unsigned count = lilv_plugin_get_num_ports(plugin);
    controls.resize(count);
    lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, controls.data());
    for (unsigned i = 0; i < count; ++i) {
        const LilvPort* port = lilv_plugin_get_port_by_index(plugin, i);
        if (isA(world.get(), plugin, port, LV2_CORE__AudioPort)) {
            const bool isInput = isA(world.get(), plugin, port, LV2_CORE__InputPort);
            (isInput ? audioIn : audioOut).push_back(i);
            continue;
        }
        if (std::isnan(controls[i]))
            controls[i] = 0.0F;
        const bool isControl = isA(world.get(), plugin, port, LV2_CORE__ControlPort);
        lilv_instance_connect_port(instance.get(), i, isControl ? &controls[i] : nullptr);
    }
}

void CLv2Plugin::process(const float* const* in, float* const* out, int count)
{
    for (std::size_t i = 0; i < 2; ++i) {
        // Inputs aren't written to; the interface just has one kind of pointer.
        lilv_instance_connect_port(instance.get(), audioIn[i], const_cast<float*>(in[i]));
        lilv_instance_connect_port(instance.get(), audioOut[i], out[i]);
    }
    lilv_instance_run(instance.get(), static_cast<unsigned>(count));
}

} // namespace tsm
