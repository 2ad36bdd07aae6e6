// A file set, copied and in place.

#include "Core/CMemoryReaderStatic.h"
#include "Other/CFileSet.h"
#include "Tests/Fuzz/FuzzTarget.h"

#include <cstring>

namespace tsm {
namespace {

void checkItems(const CFileSet& copied, const CFileSet& inPlace, const std::uint8_t* data,
                std::size_t size)
{
    promise(copied.getCount() == inPlace.getCount(), "both hold as many items");
    for (int i = 0; i < inPlace.getCount(); ++i) {
        const CFileSet::CItem& item = inPlace.getByName(i);
        promise(inPlace.find(item.getId()) == &item, "an item is found by its id");
        const CFileSet::CItem* other = copied.find(item.getId());
        promise(other && other->getSize() == item.getSize() && other->getName() == item.getName(),
                "both hold the same items");
        if (item.getSize() == 0)
            continue;
        promise(item.getData() >= data && item.getData() + item.getSize() <= data + size,
                "an item in place lies in the data");
        promise(std::memcmp(item.getData(), other->getData(),
                            static_cast<std::size_t>(item.getSize())) == 0,
                "both hold the same bytes");
    }
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CMemoryReader stream(data, static_cast<int>(size));
    CMemoryReaderStatic memory(data, static_cast<int>(size));
    CFileSet copied;
    CFileSet inPlace;
    const bool isWrong = hasFailed(copied.loadFrom(stream));
    promise(isWrong == hasFailed(inPlace.loadFrom(memory)), "memory and stream are judged alike");
    checkItems(copied, inPlace, data, size);
    if (isWrong)
        return;
    const auto write = [](const CFileSet& set) {
        return bytesOf([&](COutputStream& out) { return set.writeTo(out); });
    };
    const CByteBuffer written = write(inPlace);
    CMemoryReader reader(written);
    CFileSet again;
    promise(!hasFailed(again.loadFrom(reader)), "what is written reads back");
    promise(write(again) == written, "what is written reads back equal");
}

} // namespace tsm
