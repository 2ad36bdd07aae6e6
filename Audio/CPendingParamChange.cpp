#include "Audio/CPendingParamChange.h"

namespace tsm {

CPendingParamChange::CPendingParamChange(CUpdateNotifier& target, const void* source,
                                         std::uint64_t kind, CAudioParam& param,
                                         const CAudioParamChange& madeChange)
    : notifier(target), change(madeChange)
{
    message.sender = source;
    message.kind = kind;
    message.param = &param;
    message.change = &change;
}

void CPendingParamChange::deliver()
{
    notifier.broadcast(&message);
}

} // namespace tsm
