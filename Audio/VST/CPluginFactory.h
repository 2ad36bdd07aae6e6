#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/IPtr.h"
#include "Audio/VST/Interfaces/IPluginFactory.h"
#include "Audio/VST/Interfaces/IRunLoop.h"

#include <vector>

namespace Steinberg {

/// Lists the classes of a module and makes their objects. Classes are entered before the factory is
/// handed out.
class CPluginFactory : public FObject, public IPluginFactory3 {
public:
    /// Returns an object with one reference for the caller, or null. It may throw; the factory
    /// catches.
    using CreateFunction = FUnknown* (*)(void* context);

    /// kUnicode is added to the flags.
    explicit CPluginFactory(const PFactoryInfo& description);

    /// `context` is handed to the function at each call and borrowed. [setup]
    void registerClass(const PClassInfo2& info, CreateFunction create, void* context = nullptr);

    tresult queryInterface(const TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(FObject)

    /// kResultOk also for null.
    tresult getFactoryInfo(PFactoryInfo* info) override;
    int32 countClasses() override;
    /// kInvalidArgument for an index out of range and for null.
    tresult getClassInfo(int32 index, PClassInfo* info) override;
    tresult getClassInfo2(int32 index, PClassInfo2* info) override;
    tresult getClassInfoUnicode(int32 index, PClassInfoW* info) override;
    tresult createInstance(FIDString cid, FIDString wanted, void** obj) override;
    /// Keeps the context's loop of events until null comes.
    tresult setHostContext(FUnknown* context) override;

    /// Borrowed; null when the host gave none.
    [[nodiscard]] Linux::IRunLoop* getRunLoop() const { return runLoop.get(); }

private:
    struct CClassEntry {
        PClassInfo2 info;
        CreateFunction create;
        void* context;
    };

    [[nodiscard]] const CClassEntry* at(int32 index) const;
    [[nodiscard]] const CClassEntry* find(FIDString cid) const;

    PFactoryInfo factoryInfo;
    std::vector<CClassEntry> classes;
    IPtr<Linux::IRunLoop> runLoop;
};

} // namespace Steinberg
