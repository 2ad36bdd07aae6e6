// Texts that users, hosts and documents give as values of the product's parameters.

#include "Audio/CAudioExtParamList.h"
#include "Audio/CAudioParam.h"
#include "Audio/CAudioParamInfo.h"
#include "Audio/Converters/CAudioParamConverter.h"
#include "Tests/Fuzz/CFuzzWrapper.h"

#include <algorithm>

namespace tsm {
namespace {

class CInstance {
public:
    CInstance()
    {
        (void)fuzzProduct();
        promise(!hasFailed(wrapper.init()), "an instance begins");
        CArray<CAudioParam*> all;
        wrapper.getParamCollector().listParams(all);
        for (CAudioParam* param : all)
            if (param->getInfo())
                params.add(param);
        promise(!params.isEmpty(), "the product has parameters");
    }

    CFuzzWrapper wrapper;
    CArray<const CAudioParam*> params;
};

void checkNumber(const CAudioParamInfo& info, const CString& text)
{
    const CAudioParamConverter& converter = info.getConverter(0);
    const auto [low, high] = std::minmax(info.minValues[0], info.maxValues[0]);
    bool isRead = false;
    const double value = converter.parse(info, 0, text, isRead);
    promise(value >= low && value <= high, "what is read lies inside the limits");
    CString shown;
    converter.format(shown, info, 0, value, EAudioParamFormat::Normal);
    bool isReadAgain = false;
    const double again = converter.parse(info, 0, shown, isReadAgain);
    promise(isReadAgain || shown == "Reserve", "what is shown can be read");
    CString shownAgain;
    converter.format(shownAgain, info, 0, again, EAudioParamFormat::Normal);
    promise(shownAgain == shown || shown == "Reserve", "what is shown reads as itself");
}

void checkDefaults(const CAudioParamInfo& info, const CString& text)
{
    CAudioParamStorage values;
    if (hasFailed(values.parseDefValues(info, text)))
        return;
    promise(values.getGroupCount() <= kMaxParamGroups, "there are no more groups than can be");
    const CByteBuffer saved = bytesOf([&](COutputStream& stream) { return values.save(stream); });
    promise(saved.getSize() >= 16, "values can be saved");
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    static CInstance instance;
    if (size == 0)
        return;
    const int which = *data;
    const CString text = CString::fromUtf8(reinterpret_cast<const char*>(data + 1),
                                           static_cast<std::int64_t>(size - 1));
    const CAudioParamInfo& info = *instance.params[which % instance.params.getCount()]->getInfo();
    if (info.shape.dataType == EAudioParamType::Number)
        checkNumber(info, text);
    checkDefaults(info, text);

    const CAudioExtParamList& hostParams = instance.wrapper.getExtParamList();
    double normalized = 0.5;
    if (hostParams[which % hostParams.getCount()].parseText(text, normalized))
        promise(normalized >= 0.0 && normalized <= 1.0, "the host's value is between 0 and 1");
    CParamStateNames names;
    names.parse(text);
}

} // namespace tsm
