#include "Tools/Support/HeapWatch.h"
#include "Tools/conform/CBlockRun.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/conform/ProcessResources.h"

#include <cstdio>

#include <dlfcn.h>
#include <unistd.h>

namespace tsm {

using namespace Steinberg;

namespace {

using CEntry = bool (*)(void*);
using CExit = bool (*)();
using CGetFactory = IPluginFactory* (*)();

/// The module by hand, as its first loader sees it.
struct CBareModule {
    void* handle = nullptr;
    CEntry enter = nullptr;
    CExit exit = nullptr;
    CGetFactory getFactory = nullptr;

    [[nodiscard]] CError* load(const CPlugin& plugin)
    {
        handle = dlopen(CVstBundle::modulePath(plugin.getPath()).c_str(), RTLD_LAZY | RTLD_LOCAL);
        if (!handle)
            TSM_FAIL("the module can't be loaded: %1", CString::fromUtf8(dlerror()));
        enter = reinterpret_cast<CEntry>(dlsym(handle, "ModuleEntry"));
        exit = reinterpret_cast<CExit>(dlsym(handle, "ModuleExit"));
        getFactory = reinterpret_cast<CGetFactory>(dlsym(handle, "GetPluginFactory"));
        if (!enter || !exit || !getFactory)
            TSM_FAIL("the module doesn't export ModuleEntry, ModuleExit and GetPluginFactory");
        return nullptr;
    }
};

CError* checkEntry(CPlugin& plugin, CFindings& findings)
{
    CBareModule module;
    TSM_TRY(module.load(plugin));
    const auto expect = [&](const char* what, bool expected, bool came) {
        findings.expect(expected == came, what, expected ? "true" : "false",
                        came ? "true" : "false");
    };
    // Calls are counted: the module starts with the first and ends with as many exits.
    for (int round = 0; round < 3; ++round) {
        expect("ModuleEntry()", true, module.enter(module.handle));
        expect("ModuleEntry() once more", true, module.enter(module.handle));
        expect("the first of two calls of ModuleExit()", true, module.exit());
        auto factory = IPtr<IPluginFactory>::owned(module.getFactory());
        findings.expect(factory && factory->countClasses() > 0,
                        "the factory between two calls of ModuleExit()", "classes", "none");
        factory.reset();
        expect("the second call of ModuleExit()", true, module.exit());
        expect("a surplus call of ModuleExit()", false, module.exit());
    }
    dlclose(module.handle);
    return nullptr;
}

CError* checkFactoryPointers(CPlugin& plugin, CFindings& findings)
{
    CBareModule module;
    TSM_TRY(module.load(plugin));
    module.enter(module.handle);
    // A host asks several times, and releases only some.
    auto first = IPtr<IPluginFactory>::owned(module.getFactory());
    auto second = IPtr<IPluginFactory>::owned(module.getFactory());
    IPluginFactory* const kept = module.getFactory();
    if (!first || !second || !kept)
        TSM_FAIL("GetPluginFactory() gives null");
    const int32 count = first->countClasses();
    first.reset();
    findings.expectEqual("classes of a factory when another pointer to it was released", count,
                         second->countClasses());
    second.reset();
    auto third = IPtr<IPluginFactory>::owned(module.getFactory());
    findings.expectEqual("classes of the factory when all others were released", count,
                         third ? third->countClasses() : -1);
    findings.expectEqual("classes of a factory that the host never releases", count,
                         kept->countClasses());
    third.reset();
    module.exit();
    dlclose(module.handle);
    return nullptr;
}

CError* loadAndUse(CPlugin& plugin)
{
    TSM_TRY(plugin.open());
    {
        CVstInstance instance;
        TSM_TRY(plugin.start(instance, {.channelCount = 0, .isDouble = false}));
    }
    plugin.close();
    return nullptr;
}

CError* checkReload(CPlugin& plugin, CFindings& findings)
{
    constexpr int kWarmUp = 3;
    const int rounds = plugin.countRounds(60, 10);
    CProcessResources before;
    for (int i = 0; i < rounds + kWarmUp; ++i) {
        if (i == kWarmUp)
            before = CProcessResources::measure();
        TSM_TRY(loadAndUse(plugin));
    }
    const CProcessResources after = CProcessResources::measure();
    if (isHeapPlain())
        after.compare(before, rounds, findings);
    else
        after.compareHandles(before, rounds, findings);
    if (void* const handle =
            dlopen(CVstBundle::modulePath(plugin.getPath()).c_str(), RTLD_LAZY | RTLD_NOLOAD)) {
        dlclose(handle);
        findings.note("the loader keeps the module in memory");
    }
    return nullptr;
}

CError* checkSilence(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(loadAndUse(plugin));
    std::fflush(nullptr);
    // The case's standard output is a file of its own.
    const off_t size = lseek(STDOUT_FILENO, 0, SEEK_END);
    findings.expect(size <= 0, "what loading, an instance and unloading write to standard output",
                    "nothing, since scanners read it", std::to_string(size) + " bytes");
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"module.entry", "exports, and counted calls of ModuleEntry and ModuleExit", checkEntry},
    {"module.factory", "GetPluginFactory called often and released seldom", checkFactoryPointers},
    {"module.reload", "loading and unloading again and again, without leaving anything",
     checkReload},
    {"module.silence", "nothing is written to standard output", checkSilence},
};

} // namespace

std::span<const CConformCase> moduleCases()
{
    return kCases;
}

} // namespace tsm
