#include "Audio/CSharedParam.h"

#include "Audio/CAudioParamCollector.h"
#include "Audio/Converters/CAudioParamConverter.h"
#include "Core/CPtr.h"
#include "Core/CWriteSeqBuffer.h"

#include <utility>

namespace tsm {
namespace {

/// What a stored text looks like inside its block; false for one that couldn't be read again.
bool packText(const CString& text, CByteBuffer& item)
{
    CWriteSeqBuffer stream;
    const CPtr<CError> error(stream.writeString(text)); // only above 2 GB
    const int limit = static_cast<int>(CInputStream::kMaxStringBytes + sizeof(std::uint32_t));
    if (error || stream.getSize() > limit)
        return false;
    stream.takeData(item);
    return true;
}

} // namespace

void CSharedParam::CDataListener::onUpdate(const CUpdateMessage& message)
{
    if (message.sender != getOwner())
        getOwner()->load();
}

CSharedParam::CSharedParam(CAudioParam& sharedParam, CAppData& dataStore, const CString& name)
    : param(sharedParam), store(dataStore), dataName(name), dataListener(this)
{
}

CSharedParam::~CSharedParam()
{
    dataListener.detach();
    attach(nullptr);
}

bool CSharedParam::isTie(const CAudioParam& otherParam, const CAppData& otherStore,
                         const CString& otherName) const noexcept
{
    return &param == &otherParam && &store == &otherStore && dataName == otherName;
}

void CSharedParam::start()
{
    param.addListener(*this);
    dataListener.attach(&store, dataName);
    load();
}

void CSharedParam::onParamChanged(const void* source, CAudioParam&, const CAudioParamChange&)
{
    if (source != this)
        save();
}

// From the item to the parameter

void CSharedParam::load()
{
    // Notifications wait until the lock has been left.
    const CAudioParamHold untilEnd(param.getCollector());
    const CLockScope hold(lock);
    const CAudioParamInfo* info = param.getInfo();
    if (!info || !param.hasValues())
        return;
    if (!std::exchange(hasDefault, true))
        defaultText = currentText();
    if (info->shape.dataType == EAudioParamType::Raw)
        loadRaw();
    else
        loadText();
}

void CSharedParam::loadText()
{
    const CString text = store.readText(dataName, defaultText);
    // What reads the same stays: a number has more digits than its text.
    if (text != currentText())
        takeText(text);
}

void CSharedParam::takeText(const CString& text)
{
    const CAudioParamInfo& info = *param.getInfo();
    if (info.shape.dataType == EAudioParamType::String) {
        param.setText(0, 0, text, this);
        return;
    }
    bool isNumber = false;
    const double value = info.getConverter(0).parse(info, 0, text, isNumber);
    if (isNumber)
        param.setValue(0, 0, value, this);
}

void CSharedParam::loadRaw()
{
    CByteBuffer bytes;
    store.readData(dataName, bytes, kRawDataId);
    if (!bytes.isEmpty() && !(bytes == param.raw(0, 0)))
        param.setRaw(0, 0, bytes.data(), bytes.getSize(), this);
}

// From the parameter to the item

void CSharedParam::save()
{
    bool isFirst = false;
    bool isStored = false;
    {
        const CLockScope hold(lock);
        isFirst = !hasDefault;
        CByteBuffer item, stored;
        std::uint32_t id = 0;
        if (!isFirst && readParam(item, id)) {
            store.readData(dataName, stored, id);
            // As when a value has come from the item since the change.
            isStored = !(item == stored) && store.storeData(dataName, item, id);
        }
    }
    if (isFirst)
        load(); // its first values are the definition's, no user's choice
    else if (isStored)
        store.tellChange(dataName, this);
}

bool CSharedParam::readParam(CByteBuffer& item, std::uint32_t& id) const
{
    const CAudioParamLock hold(param);
    if (!param.getInfo() || param.getValues().getElementCount(0) < 1)
        return false;
    const bool isRaw = param.getInfo()->shape.dataType == EAudioParamType::Raw;
    id = isRaw ? kRawDataId : kTextDataId;
    if (isRaw)
        item = param.raw(0, 0);
    return isRaw || packText(currentText(), item);
}

CString CSharedParam::currentText() const
{
    const CAudioParamInfo& info = *param.getInfo();
    if (info.shape.dataType == EAudioParamType::String)
        return param.text(0, 0);
    CString text;
    if (info.shape.dataType == EAudioParamType::Number)
        info.getConverter(0).format(text, info, 0, param.value(0, 0), EAudioParamFormat::Normal);
    return text;
}

} // namespace tsm
