#include "Tools/Support/CToolMain.h"
#include "Tools/conform/CCaseRunner.h"
#include "Tools/conform/CConformOptions.h"
#include "Tools/conform/CConformReport.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"

#include "Core/CPtr.h"

#include <filesystem>
#include <iostream>

namespace tsm {
namespace {

void listCases(const std::vector<CConformCase>& cases)
{
    constexpr std::size_t kNameWidth = 30;
    for (const CConformCase& each : cases) {
        std::string name = each.name;
        name.resize(std::max(name.size(), kNameWidth), ' ');
        std::cout << name << "  " << each.about << '\n';
    }
}

CError* runCases(const CConformOptions& options, const std::vector<CConformCase>& cases,
                 bool& hasFailed)
{
    std::error_code ignored;
    // Whether its module loads is for the cases to say.
    if (!std::filesystem::is_regular_file(CVstBundle::modulePath(options.pluginPath), ignored))
        TSM_FAIL("'%1' is no plug-in bundle", CString::fromUtf8(options.pluginPath));
    const CPlugin plugin(options.pluginPath, options.className, options.isQuick, options.loading);
    const CCaseRunner runner(plugin, options.limitSeconds);
    CConformReport report;
    for (const CConformCase& each : cases) {
        CCaseResult result;
        TSM_TRY(runner.run(each, result));
        std::cout << report.add(std::move(result)) << std::flush;
    }
    std::cout << report.sum() << std::flush;
    hasFailed = report.hasFailed();
    return options.jsonPath.empty() ? nullptr
                                    : report.writeJson(options.jsonPath, options.pluginPath);
}

CError* run(int argc, char** argv, bool& hasFailed)
{
    CConformOptions options;
    bool isDone = false;
    TSM_TRY(CConformOptions::parse(argc, argv, options, isDone));
    if (isDone)
        return nullptr;
    const std::vector<CConformCase> cases = findConformCases(options.pattern);
    if (cases.empty())
        TSM_FAIL("no case matches '%1'", CString::fromUtf8(options.pattern));
    if (options.isListOnly) {
        listCases(cases);
        return nullptr;
    }
    return runCases(options, cases, hasFailed);
}

} // namespace
} // namespace tsm

int main(int argc, char** argv)
{
    bool hasFailed = false;
    const int status =
        tsm::runTool("reelpath-conform", [&] { return tsm::run(argc, argv, hasFailed); });
    return status == 0 && hasFailed ? 1 : status;
}
