#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/Interfaces/IComponentHandler.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"

#include <mutex>
#include <vector>

namespace tsm {

/// Takes what a controller tells its host, and keeps it in order. [any]
class CHostHandler : public Steinberg::FObject,
                     public Steinberg::Vst::IComponentHandler,
                     public Steinberg::Vst::IComponentHandler2,
                     public Steinberg::Vst::IUnitHandler {
public:
    enum class EKind { Begin, Perform, End, Restart, Programs };
    struct CNote {
        EKind kind;
        Steinberg::Vst::ParamID id; // of a list for Programs, the flags for Restart
        double value;               // of Perform
        friend bool operator==(const CNote&, const CNote&) = default;
    };

    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(Steinberg::FObject)

    Steinberg::tresult beginEdit(Steinberg::Vst::ParamID id) override;
    Steinberg::tresult performEdit(Steinberg::Vst::ParamID id,
                                   Steinberg::Vst::ParamValue value) override;
    Steinberg::tresult endEdit(Steinberg::Vst::ParamID id) override;
    Steinberg::tresult restartComponent(Steinberg::int32 flags) override;
    Steinberg::tresult setDirty(Steinberg::TBool state) override;
    Steinberg::tresult requestOpenEditor(Steinberg::FIDString name) override;
    Steinberg::tresult startGroupEdit() override;
    Steinberg::tresult finishGroupEdit() override;
    Steinberg::tresult notifyUnitSelection(Steinberg::Vst::UnitID unitId) override;
    Steinberg::tresult notifyProgramListChange(Steinberg::Vst::ProgramListID listId,
                                               Steinberg::int32 programIndex) override;

    /// What came since the last call.
    [[nodiscard]] std::vector<CNote> takeNotes();

private:
    Steinberg::tresult note(EKind kind, Steinberg::Vst::ParamID id, double value = 0.0);

    std::mutex lock;
    std::vector<CNote> notes;
};

} // namespace tsm
