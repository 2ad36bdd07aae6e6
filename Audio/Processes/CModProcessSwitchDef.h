#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

/// A definition that runs as a `CModProcessSwitch`. Tag `audio:modProcessSwitch`.
///
/// `process-list` names a definition for each index: items "index:name", divided by semicolons; a
/// name that begins with a point is that of a child of this definition. `def-index` is taken for an
/// index without an item; `def-child-name` is the name of whichever process runs.
class CModProcessSwitchDef : public CAudioProcessDefBase {
public:
    /// Errors: an item without a colon, an index that is no number, the same index twice; the
    /// base's.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CAudioProcessBase* createInstance() const override;

    /// The definition for an index. Errors: no such object, or not of a process; `target` is null.
    [[nodiscard]] CError* findProcess(const CAudioProcessDefBase*& target, int index) const;
    [[nodiscard]] const CString& getChildName() const noexcept { return childName; }

private:
    [[nodiscard]] CError* readItem(const CString& item, int number);

    CMap<std::int32_t, CString> names;
    std::int32_t defaultIndex = 0;
    CString childName;
};

} // namespace tsm
