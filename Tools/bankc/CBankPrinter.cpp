#include "Tools/bankc/CBankPrinter.h"

#include "Audio/CPresetItem.h"
#include "Tools/bankc/CBankHexText.h"
#include "Tools/bankc/CBankValues.h"

namespace tsm {

namespace {

std::string attribute(const std::string& name, const std::string& value)
{
    std::string text = " " + name + "=\"";
    for (const char c : value) {
        if (c == '&')
            text += "&amp;";
        else if (c == '<')
            text += "&lt;";
        else if (c == '"')
            text += "&quot;";
        else if (static_cast<unsigned char>(c) < ' ')
            text += "&#" + std::to_string(static_cast<int>(c)) + ";";
        else
            text += c;
    }
    return text + "\"";
}

/// What an item holds under its definition's name; false when its bytes can't be read.
bool readItem(const CByteBuffer& bytes, std::string& definition, CAudioParamStorage& values)
{
    CString name;
    const CPtr<CError> error(readPresetItem(bytes, name, values));
    definition = name.toUtf8();
    return !error;
}

/// A description by which the saved values of an unknown parameter can be written.
void describe(const CAudioParamStorage& values, CAudioParamInfo& info)
{
    constexpr double kWidest = 1e300;
    info.shape = values.getShape();
    info.minValues.resize(info.shape.elementSize, -kWidest);
    info.maxValues.resize(info.shape.elementSize, kWidest);
}

} // namespace

std::string CBankPrinter::print(const CBankContent& content)
{
    out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document>\n";
    findPath(content.bank);
    const bool isList = content.kind == EBankKind::List;
    const CString id = content.bank.presets.isEmpty() ? CString() : content.bank.presets[0].getId();
    out += isList ? "  <list" : "  <bank";
    if (!isList)
        out += attribute("name", content.bank.name.toUtf8());
    out += attribute("id", id.toUtf8()) + attribute("path", path);
    out += attribute("preset-count", std::to_string(content.bank.presets.getCount())) + ">\n";
    declareBare(content.bank);
    for (const CAudioPreset& preset : content.bank.presets)
        printPreset(preset);
    out += isList ? "  </list>\n" : "  </bank>\n";
    return out + "</document>\n";
}

// Keys are what stands behind the path in the definitions' names.
void CBankPrinter::findPath(const CAudioPresetBank& bank)
{
    path.clear();
    for (const CAudioPreset& preset : bank.presets) {
        for (const auto& item : preset.items) {
            const std::string end = "." + item.key.toUtf8();
            std::string definition;
            CAudioParamStorage values;
            if (readItem(item.value, definition, values) && definition.size() > end.size() &&
                definition.ends_with(end)) {
                path = definition.substr(0, definition.size() - end.size());
                return;
            }
        }
    }
}

void CBankPrinter::declareBare(const CAudioPresetBank& bank)
{
    bareKeys.clear();
    for (const CAudioPreset& preset : bank.presets)
        for (const auto& item : preset.items) {
            const std::string key = item.key.toUtf8();
            std::string definition;
            CAudioParamStorage values;
            const bool isBare = readItem(item.value, definition, values) &&
                                values.getShape() == CAudioParamShape() &&
                                !params.find(CString::fromUtf8(path + "." + key));
            if (isBare && bareKeys.insert(key).second)
                out += "    <bare" + attribute("param", key) +
                       " min=\"-1000000000\" max=\"1000000000\"/>\n";
        }
}

void CBankPrinter::printPreset(const CAudioPreset& preset)
{
    out += "    <preset" + attribute("name", preset.getDisplayName().toUtf8()) + ">\n";
    for (const auto& item : preset.items)
        printItem(item.key.toUtf8(), item.value);
    out += "    </preset>\n";
}

void CBankPrinter::printItem(const std::string& key, const CByteBuffer& bytes)
{
    std::string definition;
    CAudioParamStorage values;
    const bool isReadable = readItem(bytes, definition, values);
    const CAudioParamInfo* const known = params.find(CString::fromUtf8(path + "." + key));
    CAudioParamInfo unknown;
    describe(values, unknown);
    const bool isKnown = isReadable && known &&
                         known->shape.dataType == values.getShape().dataType &&
                         known->shape.elementSize == values.getShape().elementSize;
    if (!isReadable || !(isKnown || bareKeys.count(key))) {
        out += "      <!-- unknown: " +
               toHexText(CByteBuffer(key.data(), static_cast<int>(key.size()))) + " " +
               toHexText(bytes) + " -->\n";
        return;
    }
    std::string text;
    const bool isDisplay =
        isKnown && CBankValues(*known).print(values, CBankValues::EForm::Display, text);
    if (!isDisplay &&
        !CBankValues(isKnown ? *known : unknown).print(values, CBankValues::EForm::Real, text))
        out += "      <!-- out of range -->\n";
    out += "      <set" + attribute("param", key) + attribute(isDisplay ? "to" : "real", text) +
           "/>\n";
}

} // namespace tsm
