#include "Other/CParamMirror.h"

#include "Other/CInterfaceFields.h"

#include <utility>

namespace tsm {

CError* CParamMirror::onInfo(CInputStream& stream)
{
    bool hasInfo = false;
    TSM_TRY(readField(stream, hasInfo));
    CPtr<CAudioParamInfo> read;
    if (hasInfo) {
        read.reset(new CAudioParamInfo);
        TSM_TRY(read->load(stream, finder));
    }
    // A change of all groups brings the same description again, and need not bring all values.
    if (!read || !(read->shape == values.getShape()))
        values.reset(read ? read->shape : CAudioParamShape());
    info = std::move(read);
    return nullptr;
}

void CParamMirror::onChange(CAudioParamChange& change)
{
    if (info && change.shape == info->shape)
        values.apply(change);
}

} // namespace tsm
