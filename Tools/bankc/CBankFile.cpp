#include "Tools/bankc/CBankFile.h"

#include "Audio/CPresetDataIds.h"
#include "Core/CByteOrder.h"
#include "Core/CMemoryReader.h"
#include "Core/CWriteSeqBuffer.h"
#include "Tools/Support/CToolFile.h"

#include <cassert>
#include <string>

namespace tsm {

namespace {

CError* findKind(const std::string& file, EBankKind& kind, std::uint32_t& id)
{
    id = file.size() < 4 ? 0 : readU32(reinterpret_cast<const std::uint8_t*>(file.data()));
    switch (id) {
    case kPresetBankDataId:
        kind = EBankKind::Bank;
        return nullptr;
    case kPresetListDataId:
        kind = EBankKind::List;
        return nullptr;
    case kPresetDataId:
        kind = EBankKind::Preset;
        return nullptr;
    }
    TSM_FAIL("no block of a bank, list or preset");
}

CError* readContent(const CByteBuffer& data, CBankContent& content)
{
    CMemoryReader reader(data);
    switch (content.kind) {
    case EBankKind::Bank:
        TSM_TRY(content.bank.load(reader));
        break;
    case EBankKind::List:
        TSM_TRY(content.bank.loadList(reader));
        break;
    case EBankKind::Preset:
        TSM_TRY(content.bank.presets.create().load(reader));
        break;
    }
    std::uint64_t position = 0;
    TSM_TRY(reader.getPosition(position));
    if (position != static_cast<std::uint64_t>(data.getSize()))
        TSM_FAIL("bytes behind the last preset");
    return nullptr;
}

CError* writeBlock(const CBankContent& content, CWriteSeqBuffer& file)
{
    const bool isBank = content.kind == EBankKind::Bank;
    CWriteSeqBuffer stream;
    TSM_TRY(isBank ? content.bank.save(stream) : content.bank.saveList(stream));
    CByteBuffer data;
    stream.takeData(data);
    TSM_TRY(file.writeCompressedData(data, isBank ? kPresetBankDataId : kPresetListDataId));
    return nullptr;
}

} // namespace

CError* CBankFile::read(const std::filesystem::path& path, CBankContent& content)
{
    std::string file;
    std::string error;
    if (!CToolFile::read(path, file, error))
        TSM_FAIL("%1", CString::fromUtf8(error));
    std::uint32_t id = 0;
    TSM_TRY(findKind(file, content.kind, id));
    CMemoryReader reader(file.data(), static_cast<int>(file.size()));
    CByteBuffer data;
    TSM_TRY(reader.readCompressedData(data, id));
    TSM_TRY(readContent(data, content));
    return nullptr;
}

CError* CBankFile::write(const std::filesystem::path& path, const CBankContent& content)
{
    assert(content.kind != EBankKind::Preset);
    CWriteSeqBuffer stream;
    TSM_TRY(writeBlock(content, stream));
    CByteBuffer file;
    stream.takeData(file);
    std::string error;
    const std::string_view bytes(reinterpret_cast<const char*>(file.data()),
                                 static_cast<std::size_t>(file.getSize()));
    if (!CToolFile::write(path, bytes, error))
        TSM_FAIL("%1", CString::fromUtf8(error));
    return nullptr;
}

} // namespace tsm
