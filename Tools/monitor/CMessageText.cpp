#include "Tools/monitor/CMessageText.h"

#include "Core/CMemoryReader.h"
#include "Core/CPtr.h"
#include "Other/CInterfaceFields.h"
#include "Other/CParamChangeStream.h"

#include <array>
#include <cstdio>

namespace tsm {
namespace {

/// The fields of a message, a letter each: u, i, d numbers, s a text, n a count and so many texts,
/// c a change.
struct CMessageRow {
    const char* name;
    const char* fields;
};
constexpr std::array kMessages{
    CMessageRow{"create-undo-data", "usui"},
    CMessageRow{"remove-undo-data", "u"},
    CMessageRow{"submit-undo-data", "us"},
    CMessageRow{"request-undo-history", "u"},
    CMessageRow{"set-undo-history-pos", "i"},
    CMessageRow{"listen-param", "su"},
    CMessageRow{"unlisten-param", "u"},
    CMessageRow{"change-param", "uuc"},
    CMessageRow{"reset-param", "uiiuu"},
    CMessageRow{"listen-registry", "su"},
    CMessageRow{"unlisten-registry", "u"},
    CMessageRow{"set-current-program", "ui"},
    CMessageRow{"rename-preset", "uis"},
    CMessageRow{"activate-factory-preset", "ui"},
    CMessageRow{"activate-preset", "ui"},
    CMessageRow{"request-preset", "uuuii"},
    CMessageRow{"request-bank", "uuu"},
    CMessageRow{"set-default-preset", "u"},
    CMessageRow{"activate-default-preset", "u"},
    CMessageRow{"exchange-shadow-preset", "u"},
    CMessageRow{"update-shadow-preset", "u"},
    CMessageRow{"listen-viz", "usi"},
    CMessageRow{"unlisten-viz", "u"},
    CMessageRow{"request-viz-data", "ud"},
    CMessageRow{"request-export-slot-names", "u"},
    CMessageRow{"request-internal-channel-count", "u"},
    CMessageRow{"request-group-count", "u"},
    CMessageRow{"request-io-channel-counts", "u"},
    CMessageRow{"request-sample-rate", "u"},
    CMessageRow{"update-undo-history", "in"},
    CMessageRow{"update-param-info", "uu"},
    CMessageRow{"update-param", "uc"},
    CMessageRow{"update-registry", "uusin"},
    CMessageRow{"registry-data", "uuu"},
    CMessageRow{"update-internal-channel-count", "u"},
    CMessageRow{"update-group-count", "u"},
    CMessageRow{"update-io-channel-counts", "uuu"},
    CMessageRow{"update-sample-rate", "ud"},
    CMessageRow{"viz-data", "d"},
};

std::string numberText(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

std::string quoted(const CString& text)
{
    return '"' + text.toUtf8() + '"';
}

CError* addTexts(CInputStream& stream, std::string& text)
{
    std::uint32_t count = 0;
    TSM_TRY(readField(stream, count));
    text += " [";
    for (std::uint32_t i = 0; i < count; ++i) {
        CString one;
        TSM_TRY(readField(stream, one));
        text += (i > 0 ? ", " : "") + quoted(one);
    }
    text += "]";
    return nullptr;
}

CError* addChange(CInputStream& stream, std::string& text)
{
    CAudioParamChange change;
    TSM_TRY(readParamChange(stream, change));
    text += " group " + std::to_string(change.group) + " from " +
            std::to_string(change.firstElement) + (change.complete ? " all:" : ":");
    for (int i = 0; i < change.values.getCount(); ++i) {
        if (change.shape.dataType == EAudioParamType::Number) {
            text += ' ' + numberText(change.values[i]);
            continue;
        }
        const CPtr<CAudioParamDataItem> item = change.copyItem(i);
        const auto* string = dynamic_cast<const CAudioParamDataItemString*>(item.get());
        text += ' ' + (string ? quoted(string->text) : std::string("<data>"));
    }
    return nullptr;
}

template <class T>
CError* addNumber(CInputStream& stream, std::string& text)
{
    T value{};
    TSM_TRY(readField(stream, value));
    if constexpr (sizeof(T) == 8)
        text += ' ' + numberText(value);
    else
        text += ' ' + std::to_string(value);
    return nullptr;
}

CError* addField(char kind, CInputStream& stream, std::string& text)
{
    switch (kind) {
    case 'u':
        return addNumber<std::uint32_t>(stream, text);
    case 'i':
        return addNumber<std::int32_t>(stream, text);
    case 'd':
        return addNumber<double>(stream, text);
    case 'n':
        return addTexts(stream, text);
    case 'c':
        return addChange(stream, text);
    default:
        break;
    }
    CString string;
    TSM_TRY(readField(stream, string));
    text += ' ' + quoted(string);
    return nullptr;
}

const char* fieldsOf(const CString& name)
{
    for (const CMessageRow& row : kMessages)
        if (name == row.name)
            return row.fields;
    return "";
}

CError* addMessage(CMemoryReader& stream, std::string& text)
{
    CString name;
    TSM_TRY(readField(stream, name));
    text += name.toUtf8();
    for (const char* kind = fieldsOf(name); *kind; ++kind)
        TSM_TRY(addField(*kind, stream, text));
    return nullptr;
}

} // namespace

std::string messageText(const void* bytes, int count)
{
    CMemoryReader stream(bytes, count);
    std::string text;
    if (const CPtr<CError> error(addMessage(stream, text)); error)
        return text + " (damaged)";
    std::uint64_t position = 0;
    if (const CPtr<CError> error(stream.getPosition(position)); error)
        return text;
    const std::uint64_t left = static_cast<std::uint64_t>(count) - position;
    return left > 0 ? text + " +" + std::to_string(left) + " bytes" : text;
}

} // namespace tsm
