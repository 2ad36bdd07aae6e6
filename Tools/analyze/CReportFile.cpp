#include "Tools/analyze/CReportFile.h"

#include <fstream>

#include <nlohmann/json.hpp>

namespace tsm {

namespace {

std::optional<double> numberOf(const nlohmann::json& object, const char* name)
{
    const auto member = object.find(name);
    if (member == object.end() || !member->is_number())
        return std::nullopt;
    return member->get<double>();
}

} // namespace

bool CReportFile::readBeside(const std::filesystem::path& soundPath, CReportFile& report,
                             std::string& error)
{
    report = {};
    std::filesystem::path path = soundPath;
    path.replace_extension("json");
    std::ifstream file(path);
    if (!file)
        return true;
    const nlohmann::json object = nlohmann::json::parse(file, nullptr, false);
    if (!object.is_object()) {
        error = path.string() + ": not a JSON object";
        return false;
    }
    report.latency = numberOf(object, "latency");
    report.timesRealTime = numberOf(object, "timesRealTime");
    return true;
}

} // namespace tsm
