#include "Audio/ProductCreators.h"
#include "Core/CAppData.h"
#include "Core/CApplication.h"
#include "Tools/Support/CToolMain.h"
#include "Tools/Support/CWholeFile.h"
#include "Tools/oversampling/COversamplingReport.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace tsm;

constexpr const char* kUsage = "usage: reelpath-oversampling [TABLES.md [ALIASING.dat]]\n"
                               "Measures latency and aliasing of the engine by factor and filter; "
                               "writes the tables to a file\n"
                               "or to standard output, and the aliasing as data for plots.\n";

CError* run(const std::vector<std::string>& files)
{
    CAppData::keepInMemory();
    CApplication application;
    TSM_TRY(startProduct(application));
    COversamplingReport report;
    TSM_TRY(report.measure());
    if (files.empty()) {
        std::fputs(report.toMarkdown().c_str(), stdout);
        return nullptr;
    }
    TSM_TRY(writeWholeFile(files[0], report.toMarkdown()));
    return files.size() > 1 ? writeWholeFile(files[1], report.toPlotData()) : nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> files(argv + 1, argv + argc);
    if (files.size() > 2 || (!files.empty() && files[0].starts_with('-'))) {
        std::fputs(kUsage, files.size() == 1 && files[0] == "--help" ? stdout : stderr);
        return files.size() == 1 && files[0] == "--help" ? 0 : 2;
    }
    return tsm::runTool("reelpath-oversampling", [&] { return run(files); });
}
