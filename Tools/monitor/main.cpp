#include "Tools/Support/CToolMain.h"
#include "Tools/monitor/CMonitorJob.h"

int main(int argc, char** argv)
{
    return tsm::runToolJob<tsm::CMonitorOptions, tsm::CMonitorJob>("reelpath-monitor", argc, argv);
}
