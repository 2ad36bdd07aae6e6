#pragma once

#include "Core/CAppData.h"
#include "Core/CObject.h"

namespace tsm {

class CAudioParam;

/// Which parameter each MIDI controller stands for: the stored item `ccmap` of this product, taken
/// over at each change. Tag `audio:cctable`.
///
/// The item holds a count and for each entry the controller's number and the path of an object,
/// which stands for a parameter if it is one of the host's (CAudioExtParam).
class CAudioCCTable : public CObject, public CAppDataListener<CAudioCCTable> {
public:
    static constexpr int kControllerCount = 128;

    CAudioCCTable() : CAppDataListener(this) {}
    ~CAudioCCTable() override { detach(); }
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info);
    /// Takes the item over, on the thread of the one who wrote it.
    void onUpdate(const CUpdateMessage& message) override;

    /// The parameter of a controller; null for none and for numbers that no controller has. Looked
    /// up as the tree is now. On the tree's thread.
    [[nodiscard]] CAudioParam* findParam(int controller);

private:
    void load();

    CCriticalSection lock{50};
    CString paths[kControllerCount]; // empty for none
};

} // namespace tsm
