#include "Tools/Support/CToolMain.h"
#include "Tools/render/CRenderJob.h"

namespace {

tsm::CError* run(int argc, char** argv)
{
    tsm::CRenderOptions options;
    bool isDone = false;
    tsm::CError* error = tsm::CRenderOptions::parse(argc, argv, options, isDone);
    return error || isDone ? error : tsm::CRenderJob(options).run();
}

} // namespace

int main(int argc, char** argv)
{
    return tsm::runTool("reelpath-render", [&] { return run(argc, argv); });
}
