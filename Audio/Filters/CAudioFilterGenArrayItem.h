#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tsm {

/// One entry of a `CAudioFilterGenArray`: its `index` and the path of its generator, `fltgen`.
class CAudioFilterGenArrayItem : public CObject {
public:
    /// Errors: the parent is no array; nothing, or no generator, at the path.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);

    [[nodiscard]] int getIndex() const noexcept { return index; }
    [[nodiscard]] CAudioFilterGen* getGenerator() const noexcept { return generator.get(); }

private:
    int index = 0;
    CTarget<CAudioFilterGen*> generator;
};

} // namespace tsm
