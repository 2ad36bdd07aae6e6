#include "Audio/CPresetItem.h"

#include "Core/CMemoryReader.h"
#include "Core/CWriteSeqBuffer.h"

namespace tsm {

namespace {

CError* readShape(CInputStream& stream, CAudioParamShape& shape)
{
    std::uint32_t version = 0;
    std::int32_t dataType = 0;
    TSM_TRY(stream.readValue(version));
    TSM_TRY(stream.readValue(shape.elementSize));
    TSM_TRY(stream.readValue(dataType));
    shape.dataType = static_cast<EAudioParamType>(dataType);
    if (shape.elementSize < 1 || shape.elementSize > kMaxParamElementSize || dataType < 0 ||
        dataType > static_cast<std::int32_t>(EAudioParamType::Raw))
        TSM_FAIL("@tsmstr_CPresetItem_read_ShapeError Values of an unknown shape.");
    return nullptr;
}

} // namespace

CError* writePresetItem(const CString& definition, const CAudioParamStorage& values,
                        std::int32_t group, CByteBuffer& bytes)
{
    CWriteSeqBuffer stream;
    TSM_TRY(stream.writeString(definition));
    TSM_TRY(group < 0 ? values.save(stream) : values.saveGroup(stream, group));
    stream.takeData(bytes);
    return nullptr;
}

CError* readPresetItem(const CByteBuffer& bytes, CString& definition, CAudioParamStorage& values)
{
    CMemoryReader reader(bytes);
    TSM_TRY(reader.readString(definition));
    std::uint64_t begin = 0;
    TSM_TRY(reader.getPosition(begin));
    CAudioParamShape shape;
    TSM_TRY(readShape(reader, shape));
    TSM_TRY(reader.setPosition(begin));

    values.reset(shape);
    COwnedArray<CAudioParamChange> changes;
    TSM_TRY(values.load(reader, -1, definition, changes));
    for (CAudioParamChange& change : changes)
        values.apply(change);
    std::uint64_t position = 0;
    TSM_TRY(reader.getPosition(position));
    if (position != static_cast<std::uint64_t>(bytes.getSize()))
        TSM_FAIL("@tsmstr_CPresetItem_read_SizeError Data behind the values of '%1'.", definition);
    return nullptr;
}

} // namespace tsm
