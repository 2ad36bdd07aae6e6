#include "Tools/Support/CToolMain.h"
#include "Tools/monitor/CMonitorJob.h"

namespace {

tsm::CError* run(int argc, char** argv)
{
    tsm::CMonitorOptions options;
    bool isDone = false;
    tsm::CError* error = tsm::CMonitorOptions::parse(argc, argv, options, isDone);
    return error || isDone ? error : tsm::CMonitorJob(options).run();
}

} // namespace

int main(int argc, char** argv)
{
    return tsm::runTool("reelpath-monitor", [&] { return run(argc, argv); });
}
