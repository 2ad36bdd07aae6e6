#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

#include <atomic>

namespace Steinberg {

/// The base of objects that hosts hold: counts references from 1 and deletes itself at 0.
///
/// A class that adds interfaces overrides queryInterface() with giveInterface() for each, hands the
/// rest to its base, and joins the counts of its bases by TSM_VST_REFCOUNT.
class FObject : public FUnknown {
public:
    FObject() = default;
    FObject(const FObject&) = delete;
    FObject& operator=(const FObject&) = delete;
    virtual ~FObject() = default;

    tresult queryInterface(const TUID wanted, void** obj) override;
    uint32 addRef() override;
    uint32 release() override;

    /// Answers queryInterface() when `wanted` is this interface; `self` is the object as that
    /// interface. Returns whether it was.
    template <class Interface>
    static bool giveInterface(const char8* wanted, void** obj, Interface* self)
    {
        if (!obj || !isSameId(wanted, Interface::iid))
            return false;
        self->addRef();
        *obj = self;
        return true;
    }

private:
    std::atomic<uint32> refCount{1};
};

} // namespace Steinberg

/// One count for all bases of a class that derives from FObject through `base`.
#define TSM_VST_REFCOUNT(base)                                                                     \
    ::Steinberg::uint32 addRef() override                                                          \
    {                                                                                              \
        return base::addRef();                                                                     \
    }                                                                                              \
    ::Steinberg::uint32 release() override                                                         \
    {                                                                                              \
        return base::release();                                                                    \
    }
