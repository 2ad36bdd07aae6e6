#pragma once

#include <lilv/lilv.h>

#include <memory>
#include <string>
#include <vector>

namespace tsm {

/// One instance of an installed LV2 plug-in with two inputs and two outputs, at its defaults: what
/// the benchmarks compare with. The plug-in is given no features.
class CLv2Plugin {
public:
    /// Whether the plug-in of that URI is installed and takes stereo.
    [[nodiscard]] static bool isInstalled(const std::string& uri);

    /// Makes and activates an installed plug-in. `rate` in Hz; blocks of `maxBlock` samples at
    /// most.
    CLv2Plugin(const std::string& uri, double rate, int maxBlock);
    ~CLv2Plugin();
    CLv2Plugin(const CLv2Plugin&) = delete;
    CLv2Plugin& operator=(const CLv2Plugin&) = delete;

    /// Works `count` samples of two channels.
    void process(const float* const* in, float* const* out, int count);

private:
    struct CEnd {
        void operator()(LilvWorld* ended) const noexcept { lilv_world_free(ended); }
        void operator()(LilvInstance* ended) const noexcept { lilv_instance_free(ended); }
    };

    void connect(const LilvPlugin* plugin);

    std::unique_ptr<LilvWorld, CEnd> world;
    std::unique_ptr<LilvInstance, CEnd> instance;
    std::vector<float> controls;
    std::vector<unsigned> audioIn;
    std::vector<unsigned> audioOut;
};

} // namespace tsm
