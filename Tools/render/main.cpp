#include "Tools/Support/CToolMain.h"
#include "Tools/render/CRenderJob.h"

int main(int argc, char** argv)
{
    return tsm::runToolJob<tsm::CRenderOptions, tsm::CRenderJob>("reelpath-render", argc, argv);
}
