#include "Tools/bankc/CBankValues.h"

#include "Audio/CPresetItem.h"
#include "Audio/Converters/CAudioParamConverter.h"
#include "Core/CText.h"
#include "Tools/bankc/CBankHexText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

namespace tsm {

namespace {

constexpr char kEscape = '\\';

/// Cuts at a separator that no backslash stands in front of.
std::vector<std::string> cut(std::string_view text, char separator)
{
    std::vector<std::string> pieces(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == separator) {
            pieces.emplace_back();
            continue;
        }
        pieces.back() += text[i];
        if (text[i] == kEscape && i + 1 < text.size())
            pieces.back() += text[++i];
    }
    return pieces;
}

std::string unescape(const std::string& text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i)
        plain += text[i] == kEscape && i + 1 < text.size() ? text[++i] : text[i];
    return plain;
}

std::string escape(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == ',' || c == ';' || c == kEscape)
            escaped += kEscape;
        escaped += c;
    }
    return escaped;
}

std::string quote(const std::string& text)
{
    return "'" + text + "'";
}

std::string realText(double value)
{
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return {digits, end};
}

} // namespace

std::string CBankValues::parse(std::string_view text, EForm form, CAudioParamStorage& values) const
{
    values.reset(info.shape);
    const std::vector<std::string> groups = cut(text, ';');
    if (groups.size() > (info.shape.isSingleGroup ? 1 : kMaxParamGroups))
        return "too many groups";
    for (std::size_t group = 0; group < groups.size(); ++group) {
        CAudioParamChange change;
        change.group = static_cast<std::int32_t>(group);
        change.complete = true;
        change.shape = info.shape;
        for (const std::string& element : cut(groups[group], ','))
            if (std::string problem = parseElement(element, form, change); !problem.empty())
                return problem;
        if (info.shape.isSingleElement && change.elementCount != 1)
            return "more than one value";
        if (!values.apply(change))
            return "too many values";
    }
    return {};
}

std::string CBankValues::parseElement(const std::string& text, EForm form,
                                      CAudioParamChange& change) const
{
    if (info.shape.dataType == EAudioParamType::Number)
        return parseNumbers(text, form, change);
    if (info.shape.dataType == EAudioParamType::String) {
        const CString plain = CString::fromUtf8(unescape(text));
        change.addItem(CPtr<CAudioParamDataItem>(new CAudioParamDataItemString(plain)));
        return {};
    }
    CByteBuffer bytes;
    if (!parseHexText(text, bytes))
        return quote(text) + " are no hexadecimal digits";
    change.addItem(
        CPtr<CAudioParamDataItem>(new CAudioParamDataItemRaw(bytes.data(), bytes.getSize())));
    return {};
}

std::string CBankValues::parseNumbers(const std::string& text, EForm form,
                                      CAudioParamChange& change) const
{
    const CString trimmed = CString::fromUtf8(text).trimmed();
    COwnedArray<CString> pieces;
    if (info.shape.elementSize == 1)
        pieces.create(trimmed);
    else
        splitWords(trimmed, pieces);
    if (pieces.getCount() != info.shape.elementSize)
        return quote(text) + " are not " + std::to_string(info.shape.elementSize) + " numbers";
    for (int e = 0; e < info.shape.elementSize; ++e) {
        double value = 0.0;
        if (std::string problem = parseNumber(e, pieces[e].toUtf8(), form, value); !problem.empty())
            return problem;
        change.values.add(value);
    }
    ++change.elementCount;
    return {};
}

std::string CBankValues::parseNumber(int e, const std::string& text, EForm form,
                                     double& value) const
{
    // Limits were read from texts of their own, so that equal ones may differ in their last digits.
    constexpr double kRounding = 1e-12;
    bool isRead = false;
    if (form == EForm::Display) {
        value = info.getConverter(e).parseUnclamped(info, e, CString::fromUtf8(text), isRead);
    } else {
        const char* const end = text.data() + text.size();
        const auto result = std::from_chars(text.data(), end, value);
        isRead = result.ptr == end && result.ec == std::errc() && std::isfinite(value);
    }
    if (!isRead)
        return quote(text) + " is no value";
    const double low = std::min(info.minValues[e], info.maxValues[e]);
    const double high = std::max(info.minValues[e], info.maxValues[e]);
    const double tolerance = kRounding * (std::abs(low) + std::abs(high));
    if (value < low - tolerance || value > high + tolerance)
        return quote(text) + " is out of the range of " + rangeText(e);
    return {};
}

std::string CBankValues::displayText(int e, double value) const
{
    CString text;
    info.getConverter(e).format(text, info, e, value, EAudioParamFormat::Normal);
    return text.toUtf8();
}

std::string CBankValues::rangeText(int e) const
{
    const std::string low = displayText(e, info.minValues[e]);
    return low + " to " + displayText(e, info.maxValues[e]);
}

std::string CBankValues::elementText(const CAudioParamChange& change, int element, EForm form) const
{
    if (info.shape.dataType != EAudioParamType::Number) {
        const CPtr<CAudioParamDataItem> item = change.copyItem(element);
        if (const auto* text = dynamic_cast<const CAudioParamDataItemString*>(item.get()))
            return escape(text->text.toUtf8());
        return toHexText(static_cast<const CAudioParamDataItemRaw*>(item.get())->block);
    }
    std::string text;
    for (int e = 0; e < info.shape.elementSize; ++e) {
        const double value = change.values[element * info.shape.elementSize + e];
        text += e ? " " : "";
        text += form == EForm::Real ? realText(value) : displayText(e, value);
    }
    return text;
}

bool CBankValues::print(const CAudioParamStorage& values, EForm form, std::string& text) const
{
    text.clear();
    for (int group = 0; group < values.getGroupCount(); ++group) {
        CAudioParamChange held;
        values.copyGroup(group, held);
        text += group ? ";" : "";
        for (int element = 0; element < held.elementCount; ++element) {
            text += element ? "," : "";
            text += elementText(held, element, form);
        }
    }
    CAudioParamStorage readBack;
    return parse(text, form, readBack).empty() && isSame(values, readBack);
}

bool CBankValues::isSame(const CAudioParamStorage& a, const CAudioParamStorage& b)
{
    CByteBuffer savedA;
    CByteBuffer savedB;
    const CPtr<CError> errorA(writePresetItem({}, a, -1, savedA));
    const CPtr<CError> errorB(writePresetItem({}, b, -1, savedB));
    return !errorA && !errorB && savedA == savedB;
}

} // namespace tsm
