#include "Tools/Support/CToolMain.h"
#include "Tools/host/CHostJob.h"

namespace {

tsm::CError* run(int argc, char** argv)
{
    tsm::CHostOptions options;
    bool isDone = false;
    tsm::CError* error = tsm::CHostOptions::parse(argc, argv, options, isDone);
    return error || isDone ? error : tsm::CHostJob(options).run();
}

} // namespace

int main(int argc, char** argv)
{
    return tsm::runTool("reelpath-host", [&] { return run(argc, argv); });
}
