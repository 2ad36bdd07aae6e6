#include "Tools/hostlib/CHostHandler.h"

#include <utility>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

tresult CHostHandler::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IComponentHandler>(wanted, obj, this) ||
        giveInterface<IComponentHandler2>(wanted, obj, this) ||
        giveInterface<IUnitHandler>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

tresult CHostHandler::beginEdit(ParamID id)
{
    return note(EKind::Begin, id);
}

tresult CHostHandler::performEdit(ParamID id, ParamValue value)
{
    return note(EKind::Perform, id, value);
}

tresult CHostHandler::endEdit(ParamID id)
{
    return note(EKind::End, id);
}

tresult CHostHandler::restartComponent(int32 flags)
{
    return note(EKind::Restart, static_cast<ParamID>(flags));
}

tresult CHostHandler::setDirty(TBool)
{
    return kResultOk;
}

tresult CHostHandler::requestOpenEditor(FIDString)
{
    return kNotImplemented;
}

tresult CHostHandler::startGroupEdit()
{
    return kResultOk;
}

tresult CHostHandler::finishGroupEdit()
{
    return kResultOk;
}

tresult CHostHandler::notifyUnitSelection(UnitID)
{
    return kResultOk;
}

tresult CHostHandler::notifyProgramListChange(ProgramListID listId, int32)
{
    return note(EKind::Programs, static_cast<ParamID>(listId));
}

tresult CHostHandler::note(EKind kind, ParamID id, double value)
{
    constexpr std::size_t kMaxNotes = 1U << 16; // nobody reads more of a plug-in gone wild
    const std::lock_guard guard(lock);
    if (notes.size() < kMaxNotes)
        notes.push_back({kind, id, value});
    return kResultOk;
}

std::vector<CHostHandler::CNote> CHostHandler::takeNotes()
{
    const std::lock_guard guard(lock);
    return std::exchange(notes, {});
}

} // namespace tsm
