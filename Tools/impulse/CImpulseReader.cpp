#include "Tools/impulse/CImpulseReader.h"

#include <algorithm>
#include <charconv>
#include <set>

#include <pugixml.hpp>

namespace tsm {
namespace {

struct CField {
    const char* name;
    double lowest, highest;
    double CImpulseSpec::*ofImpulse;
    double CTapeMachine::*ofMachine;
};

constexpr CField machineField(const char* name, double lowest, double highest,
                              double CTapeMachine::*member)
{
    return {name, lowest, highest, nullptr, member};
}
constexpr CField impulseField(const char* name, double lowest, double highest,
                              double CImpulseSpec::*member)
{
    return {name, lowest, highest, member, nullptr};
}

constexpr CField kFields[] = {
    impulseField("rate", 8000.0, 384000.0, &CImpulseSpec::rate),
    impulseField("samples", 64.0, 65536.0, &CImpulseSpec::samples),
    impulseField("peak", -1.0, 1.0, &CImpulseSpec::peak),
    impulseField("peak-sample", 0.0, 65535.0, &CImpulseSpec::peakSample),
    machineField("speed-ips", 0.5, 60.0, &CTapeMachine::speedIps),
    machineField("gap-um", 0.1, 50.0, &CTapeMachine::gapUm),
    machineField("spacing-um", 0.0, 50.0, &CTapeMachine::spacingUm),
    machineField("transition-um", 0.0, 50.0, &CTapeMachine::transitionUm),
    machineField("coating-um", 0.1, 50.0, &CTapeMachine::coatingUm),
    machineField("track-mm", 0.1, 30.0, &CTapeMachine::trackMm),
    machineField("azimuth-minutes", 0.0, 60.0, &CTapeMachine::azimuthMinutes),
    machineField("head-mm", 0.1, 50.0, &CTapeMachine::headMm),
    machineField("lift-mm", 0.0, 50.0, &CTapeMachine::liftMm),
    machineField("low-cut-hz", 1.0, 200.0, &CTapeMachine::lowCutHz),
    machineField("high-cut-hz", 2000.0, 100000.0, &CTapeMachine::highCutHz),
    machineField("lead-limit-hz", 2000.0, 100000.0, &CTapeMachine::leadLimitHz),
    machineField("align-hz", 2000.0, 20000.0, &CTapeMachine::alignHz),
    machineField("align-db", -20.0, 20.0, &CTapeMachine::alignDb),
};

bool parseNumber(std::string_view text, double& number)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

/// One impulse below its machine.
class CImpulseElement {
public:
    CImpulseElement(const pugi::xml_node& impulseNode, std::string& errorText)
        : node(impulseNode), error(errorText)
    {
    }

    bool read(CImpulseSpec& impulse)
    {
        impulse.name = node.attribute("name").value();
        if (impulse.name.empty())
            return fail("has no name");
        return readId(impulse) && readFormat(impulse) && readNumbers(impulse) &&
               checkKnown(node, {"id", "name", "format"}) && checkKnown(node.parent(), {"name"});
    }

private:
    bool fail(const std::string& what)
    {
        error = "impulse '" + std::string(node.attribute("name").value()) + "' " + what;
        return false;
    }

    bool readId(CImpulseSpec& impulse)
    {
        const std::string_view text = node.attribute("id").value();
        const auto result = std::from_chars(text.data(), text.data() + text.size(), impulse.id);
        return (!text.empty() && result.ec == std::errc() &&
                result.ptr == text.data() + text.size()) ||
               fail("has no number as its id");
    }

    bool readFormat(CImpulseSpec& impulse)
    {
        const std::string_view text = attribute("format").value();
        impulse.format =
            text == "integer24" ? CImpulseSpec::EFormat::Integer24 : CImpulseSpec::EFormat::Float32;
        return text == "integer24" || text == "float32" ||
               fail("has the format '" + std::string(text) + "', not float32 or integer24");
    }

    bool readNumbers(CImpulseSpec& impulse)
    {
        for (const CField& field : kFields) {
            double number = 0.0;
            if (!parseNumber(attribute(field.name).value(), number))
                return fail("needs a number '" + std::string(field.name) + "'");
            if (!(number >= field.lowest && number <= field.highest))
                return fail("has '" + std::string(field.name) + "' out of range");
            if (field.ofImpulse)
                impulse.*field.ofImpulse = number;
            else
                impulse.machine.*field.ofMachine = number;
        }
        return impulse.peakSample < impulse.samples || fail("has its peak behind its end");
    }

    pugi::xml_attribute attribute(const char* name) const
    {
        const pugi::xml_attribute own = node.attribute(name);
        return own ? own : node.parent().attribute(name);
    }

    bool checkKnown(const pugi::xml_node& element, std::set<std::string_view> known)
    {
        for (const CField& field : kFields)
            known.insert(field.name);
        known.insert("format");
        for (const pugi::xml_attribute& given : element.attributes())
            if (!known.contains(given.name()))
                return fail("has the unknown attribute '" + std::string(given.name()) + "'");
        return true;
    }

    const pugi::xml_node& node;
    std::string& error;
};

} // namespace

bool CImpulseReader::read(std::string_view document, std::vector<CImpulseSpec>& impulses,
                          std::string& error)
{
    pugi::xml_document xml;
    const pugi::xml_parse_result parsed = xml.load_buffer(document.data(), document.size());
    if (!parsed) {
        const auto line = std::count(document.begin(), document.begin() + parsed.offset, '\n') + 1;
        error = "line " + std::to_string(line) + ": " + parsed.description();
        return false;
    }
    std::set<unsigned> ids;
    for (const pugi::xml_node& machine : xml.child("impulses").children("machine"))
        for (const pugi::xml_node& node : machine.children("impulse")) {
            CImpulseSpec impulse;
            if (!CImpulseElement(node, error).read(impulse))
                return false;
            if (!ids.insert(impulse.id).second) {
                error = "impulse '" + impulse.name + "' has the id of another";
                return false;
            }
            impulses.push_back(impulse);
        }
    if (impulses.empty())
        error = "no impulses";
    return !impulses.empty();
}

} // namespace tsm
