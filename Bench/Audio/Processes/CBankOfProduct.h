#pragma once

#include "Audio/Processes/CBankedImpulseCache.h"
#include "Audio/ProductCreators.h"
#include "Bench/Support/Check.h"
#include "Core/CApplication.h"

namespace tsm {

/// The product's bank of impulses, for benchmarks.
class CBankOfProduct {
public:
    CBankOfProduct()
    {
        check(startProduct(application));
        check(application.getSharedRoot()->findObjectChecked(bank, "fs.impulses"));
    }
    /// Through the process's cache, for stereo.
    CBankedImpulseRef load(std::uint32_t id, double rate)
    {
        CImpulseSource source;
        CBankedImpulseRef impulse;
        check(CImpulseSource::fromSet(source, *bank, id));
        check(CBankedImpulseCache::get().load(impulse, source, rate, 2));
        return impulse;
    }

private:
    CApplication application;
    CFileSetObject* bank = nullptr;
};

} // namespace tsm
