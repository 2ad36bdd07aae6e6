#include "Tools/defc/CDefClasses.h"

#include <algorithm>

namespace tsm {

namespace {

const CDefAttribute* findAttribute(const CDefNode& node, const std::string& key)
{
    const auto found = std::find_if(node.attributes.begin(), node.attributes.end(),
                                    [&key](const CDefAttribute& a) { return a.key == key; });
    return found == node.attributes.end() ? nullptr : &*found;
}

} // namespace

void CDefClass::setSlot(const CSlot& slot)
{
    const auto found = std::find_if(slots.begin(), slots.end(),
                                    [&slot](const CSlot& s) { return s.key == slot.key; });
    if (found == slots.end())
        slots.push_back(slot);
    else
        *found = slot;
}

const CDefClass::CSlot* CDefClass::findSlot(const std::string& key) const
{
    const auto found =
        std::find_if(slots.begin(), slots.end(), [&key](const CSlot& s) { return s.key == key; });
    return found == slots.end() ? nullptr : &*found;
}

bool CDefClasses::declare(const std::string& tag, const CDefClass& declared)
{
    return classes.emplace(tag, declared).second;
}

const CDefClass* CDefClasses::find(const std::string& tag) const
{
    const auto found = classes.find(tag);
    return found == classes.end() ? nullptr : &found->second;
}

std::vector<std::string> CDefClasses::complete(CDefNode& node) const
{
    std::vector<std::string> messages;
    const CDefClass* known = find(node.tag);
    if (!known)
        return messages;

    std::vector<CDefAttribute> all;
    for (const CDefClass::CSlot& slot : known->slots) {
        const CDefAttribute* given = findAttribute(node, slot.key);
        if (!given && slot.isRequired)
            messages.push_back("'" + node.tag + "' needs the attribute '" + slot.key + "'");
        all.push_back({slot.key, given ? given->value : slot.value});
    }
    for (const CDefAttribute& given : node.attributes) {
        if (known->findSlot(given.key))
            continue;
        if (!known->isOpen)
            messages.push_back("'" + node.tag + "' has no attribute '" + given.key + "'");
        all.push_back(given);
    }
    node.attributes = std::move(all);
    if (node.name.empty())
        node.name = known->name;
    return messages;
}

} // namespace tsm
