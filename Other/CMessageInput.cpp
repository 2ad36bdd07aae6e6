#include "Other/CMessageInput.h"

#include "Core/CInputStream.h"

#include <utility>

namespace tsm {

CError* CMessageInput::run(CObject& receiver, CInputStream& message)
{
    const CLockScope hold(lock);
    CString name;
    TSM_TRY(message.readString(name));
    CInputStream* const outer = std::exchange(reader, &message);
    CError* const error = receiver.runEvent(name);
    reader = outer;
    TSM_TRY(error);
    return nullptr;
}

} // namespace tsm
