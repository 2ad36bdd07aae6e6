// The values of one parameter as they lie in a preset: numbers, texts and blocks.

#include "Audio/CPresetItem.h"
#include "Tests/Fuzz/FuzzTarget.h"

namespace tsm {

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    const CByteBuffer bytes(data, static_cast<int>(size));
    CString definition;
    CAudioParamStorage values;
    if (hasFailed(readPresetItem(bytes, definition, values)))
        return;
    promise(values.getGroupCount() <= kMaxParamGroups, "there are no more groups than can be");
    CByteBuffer written;
    promise(!hasFailed(writePresetItem(definition, values, -1, written)), "values can be written");
    CAudioParamStorage same;
    promise(!hasFailed(readPresetItem(written, definition, same)), "what is written reads back");
    CByteBuffer again;
    promise(!hasFailed(writePresetItem(definition, same, -1, again)), "values can be written");
    promise(again == written, "what is written reads back equal");
}

} // namespace tsm
