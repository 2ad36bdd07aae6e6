// The description of a parameter as another tree of the process reads it, and its converters at
// whatever limits it names.

#include "Audio/CAudioParamInfo.h"
#include "Audio/Converters/CAudioParamConverter.h"
#include "Core/CMemoryReader.h"
#include "Tests/Fuzz/CFuzzWrapper.h"

namespace tsm {
namespace {

CObject& finder()
{
    static CTreePtr<CObject> root;
    if (!root)
        promise(!hasFailed(fuzzProduct().initRootObject(root, CString())), "a tree begins");
    return *root;
}

void useConverter(const CAudioParamInfo& info, int e)
{
    const CAudioParamConverter& converter = info.getConverter(e);
    for (const double x : {0.0, 0.3, 1.0}) {
        const double real = converter.normToReal(info, e, x);
        (void)converter.realToNorm(info, e, real);
        (void)converter.displayToNorm(info, e, converter.normToDisplay(info, e, x));
        for (const auto mode : {EAudioParamFormat::Normal, EAudioParamFormat::Compact,
                                EAudioParamFormat::Long, EAudioParamFormat::Precise}) {
            CString text;
            bool isRead = false;
            converter.format(text, info, e, real, mode);
            (void)converter.parse(info, e, text, isRead);
        }
    }
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CGuardedInput source(data, size);
    CAudioParamInfo info;
    if (hasFailed(info.load(source, finder())))
        return;
    for (int e = 0; e < info.shape.elementSize; ++e)
        useConverter(info, e);
    const auto save = [](const CAudioParamInfo& from) {
        return bytesOf([&](COutputStream& stream) { return from.save(stream); });
    };
    const CByteBuffer saved = save(info);
    CMemoryReader reader(saved);
    CAudioParamInfo again;
    promise(!hasFailed(again.load(reader, finder())), "what is saved loads");
    promise(save(again) == saved, "what is saved loads equal");
}

} // namespace tsm
