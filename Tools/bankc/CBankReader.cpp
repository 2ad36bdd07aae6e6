#include "Tools/bankc/CBankReader.h"

#include "Audio/CPresetItem.h"

#include <cstring>

namespace tsm {

namespace {

CString toCString(const std::string& text)
{
    return CString::fromUtf8(text);
}

} // namespace

bool CBankReader::read(const std::filesystem::path& file, CBankContent& content)
{
    if (!source.load(file, problems))
        return false;
    const pugi::xml_node root = source.getRoot();
    int bankCount = 0;
    for (const pugi::xml_node& node : root.children()) {
        const std::string tag = node.name();
        if (tag != "bank" && tag != "list") {
            complain(node, "'" + tag + "' is neither 'bank' nor 'list'");
        } else if (++bankCount > 1) {
            complain(node, "only one bank or list may stand in a file");
        } else {
            content.kind = tag == "bank" ? EBankKind::Bank : EBankKind::List;
            readRoot(node, content);
        }
    }
    if (bankCount == 0 && problems.isEmpty())
        complain(root, "there is no bank or list");
    return problems.isEmpty();
}

void CBankReader::readRoot(const pugi::xml_node& node, CBankContent& content)
{
    const bool isBank = content.kind == EBankKind::Bank;
    std::set<std::string> known = {"id", "path", "name-param", "preset-count", "item-count"};
    std::set<std::string> required = {"id", "path"};
    if (isBank) {
        known.insert("name");
        required.insert("name");
    }
    if (!checkAttributes(node, known, required))
        return;
    id = node.attribute("id").value();
    hierarchy = node.attribute("path").value();
    nameParam = node.attribute("name-param").value();
    content.bank.name = toCString(node.attribute("name").value());

    CAudioPreset base;
    for (const pugi::xml_node& child : node.children()) {
        if (std::strcmp(child.name(), "bare") == 0)
            readBare(child);
        else if (std::strcmp(child.name(), "base") == 0)
            readItems(child, base);
        else if (std::strcmp(child.name(), "preset") == 0)
            readPreset(child, base, content);
        else
            complain(child, std::string("'") + child.name() + "' may not stand here");
    }
    checkCount(node, node.attribute("preset-count"), content.bank.presets.getCount());
}

void CBankReader::readBare(const pugi::xml_node& node)
{
    if (!checkAttributes(node, {"param", "min", "max"}, {"param", "min", "max"}))
        return;
    const std::string key = node.attribute("param").value();
    if (findInfo(key)) {
        complain(node, "'" + key + "' is defined");
        return;
    }
    CPtr<CAudioParamInfo> info(new CAudioParamInfo);
    const CPtr<CError> error(params.describeBare(*info, toCString(fullName(key)),
                                                 node.attribute("min").value(),
                                                 node.attribute("max").value()));
    if (error)
        complain(node, error->getMessage().toUtf8());
    bareInfos[key] = std::move(info);
}

void CBankReader::readPreset(const pugi::xml_node& node, const CAudioPreset& base,
                             CBankContent& content)
{
    if (!checkAttributes(node, {"name"}, {"name"}))
        return;
    const std::string name = node.attribute("name").value();
    if (!presetNames.insert(name).second)
        complain(node, "there is a preset '" + name + "' already");
    CAudioPreset& preset = *new CAudioPreset(base);
    content.bank.presets.add(&preset);
    preset.setName(toCString(id), toCString(name));
    if (!nameParam.empty())
        writeName(node, name, preset);
    readItems(node, preset);
    checkCount(node, node.parent().attribute("item-count"), preset.items.getCount());
}

void CBankReader::writeName(const pugi::xml_node& node, const std::string& name,
                            CAudioPreset& preset)
{
    const CAudioParamInfo* const info = findInfo(nameParam);
    if (!info || info->shape.dataType != EAudioParamType::String) {
        complain(node.parent(), "'" + nameParam + "' is no text parameter");
        return;
    }
    CAudioParamStorage values;
    CAudioParamChange change;
    change.complete = true;
    change.shape = info->shape;
    change.addItem(CPtr<CAudioParamDataItem>(new CAudioParamDataItemString(toCString(name))));
    values.reset(info->shape);
    values.apply(change);
    handleError(writePresetItem(info->fullName, values, -1, preset.items[toCString(nameParam)]));
}

void CBankReader::readItems(const pugi::xml_node& node, CAudioPreset& preset)
{
    std::set<std::string> seen;
    for (const pugi::xml_node& child : node.children())
        readItem(child, preset, seen);
}

void CBankReader::readItem(const pugi::xml_node& node, CAudioPreset& preset,
                           std::set<std::string>& seen)
{
    const std::string tag = node.name();
    if (tag != "set" && tag != "default") {
        complain(node, "'" + tag + "' is neither 'set' nor 'default'");
        return;
    }
    const bool isSet = tag == "set";
    if (!checkAttributes(node,
                         isSet ? std::set<std::string>{"param", "to", "real"}
                               : std::set<std::string>{"param"},
                         {"param"}))
        return;
    const std::string key = node.attribute("param").value();
    const CAudioParamInfo* const info = findInfo(key);
    if (!info)
        complain(node, "no parameter '" + fullName(key) + "' that presets hold");
    else if (!seen.insert(key).second)
        complain(node, "'" + key + "' is set already");
    if (!info)
        return;
    CAudioParamStorage values;
    if (isSet && !readValues(node, *info, values))
        return;
    handleError(writePresetItem(info->fullName, isSet ? values : info->defaults, -1,
                                preset.items[toCString(key)]));
}

bool CBankReader::readValues(const pugi::xml_node& node, const CAudioParamInfo& info,
                             CAudioParamStorage& values)
{
    const pugi::xml_attribute display = node.attribute("to");
    const pugi::xml_attribute real = node.attribute("real");
    if (static_cast<bool>(display) == static_cast<bool>(real)) {
        complain(node, "'set' needs either 'to' or 'real'");
        return false;
    }
    const auto form = display ? CBankValues::EForm::Display : CBankValues::EForm::Real;
    const std::string problem =
        CBankValues(info).parse(display ? display.value() : real.value(), form, values);
    if (!problem.empty())
        complain(node, "'" + info.fullName.toUtf8() + "': " + problem);
    return problem.empty();
}

void CBankReader::checkCount(const pugi::xml_node& place, const pugi::xml_attribute& wanted,
                             int count)
{
    const std::string found = std::to_string(count);
    if (wanted && found != wanted.value())
        complain(place, std::string("'") + wanted.name() + "' is " + wanted.value() +
                            ", but there are " + found);
}

bool CBankReader::checkAttributes(const pugi::xml_node& node, const std::set<std::string>& known,
                                  const std::set<std::string>& required)
{
    bool isGood = true;
    const std::string tag = node.name();
    for (const pugi::xml_attribute& attribute : node.attributes()) {
        if (known.count(attribute.name()))
            continue;
        complain(node, "'" + tag + "' has no attribute '" + attribute.name() + "'");
        isGood = false;
    }
    for (const std::string& name : required) {
        if (node.attribute(name.c_str()))
            continue;
        complain(node, "'" + tag + "' needs the attribute '" + name + "'");
        isGood = false;
    }
    return isGood;
}

const CAudioParamInfo* CBankReader::findInfo(const std::string& key) const
{
    const auto bare = bareInfos.find(key);
    return bare != bareInfos.end() ? bare->second.get() : params.find(toCString(fullName(key)));
}

} // namespace tsm
