#include "Tools/conform/CConformReport.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>

namespace tsm {

namespace {

constexpr std::size_t kNameWidth = 30;

const char* wordOf(CCaseResult::EVerdict verdict)
{
    switch (verdict) {
    case CCaseResult::EVerdict::Pass:
        return "pass";
    case CCaseResult::EVerdict::Skip:
        return "skip";
    default:
        return "FAIL";
    }
}

std::string joinNotes(const std::vector<std::string>& notes)
{
    std::string joined;
    for (const std::string& note : notes)
        joined += (joined.empty() ? "" : "; ") + note;
    return joined;
}

std::string secondsText(double seconds)
{
    const auto tenths = std::lround(seconds * 10.0);
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " s";
}

nlohmann::ordered_json toJson(const CCaseResult& result)
{
    nlohmann::ordered_json made{{"name", result.name},
                                {"verdict", wordOf(result.verdict)},
                                {"seconds", result.seconds},
                                {"notes", result.notes},
                                {"failures", nlohmann::ordered_json::array()},
                                {"output", result.output}};
    for (const CFinding& failure : result.failures)
        made["failures"].push_back(
            {{"what", failure.what}, {"expected", failure.expected}, {"came", failure.came}});
    return made;
}

} // namespace

std::string CConformReport::add(CCaseResult result)
{
    std::string name = result.name;
    name.resize(std::max(name.size(), kNameWidth), ' ');
    std::string text =
        std::string(wordOf(result.verdict)) + "  " + name + "  " + joinNotes(result.notes);
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
    for (const CFinding& failure : result.failures)
        text += "      " + failure.what + "\n        expected  " + failure.expected +
                "\n        came      " + failure.came + '\n';
    for (const std::string& line : result.output)
        text += "      | " + line + '\n';
    results.push_back(std::move(result));
    return text;
}

std::string CConformReport::sum() const
{
    double seconds = 0.0;
    for (const CCaseResult& result : results)
        seconds += result.seconds;
    return std::to_string(count(CCaseResult::EVerdict::Pass)) + " passed, " +
           std::to_string(count(CCaseResult::EVerdict::Fail)) + " failed, " +
           std::to_string(count(CCaseResult::EVerdict::Skip)) + " skipped, " +
           secondsText(seconds) + '\n';
}

long CConformReport::count(CCaseResult::EVerdict verdict) const
{
    return std::ranges::count(results, verdict, &CCaseResult::verdict);
}

CError* CConformReport::writeJson(const std::string& path, const std::string& pluginPath) const
{
    nlohmann::ordered_json whole{{"plugin", pluginPath},
                                 {"passed", count(CCaseResult::EVerdict::Pass)},
                                 {"failed", count(CCaseResult::EVerdict::Fail)},
                                 {"skipped", count(CCaseResult::EVerdict::Skip)},
                                 {"cases", nlohmann::ordered_json::array()}};
    for (const CCaseResult& result : results)
        whole["cases"].push_back(toJson(result));
    std::ofstream out(path);
    // Texts of a plug-in may be no UTF-8.
    out << whole.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    out.close();
    if (!out)
        TSM_FAIL("can't write '%1'", CString::fromUtf8(path));
    return nullptr;
}

} // namespace tsm
