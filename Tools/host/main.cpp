#include "Tools/Support/CToolMain.h"
#include "Tools/host/CHostJob.h"

int main(int argc, char** argv)
{
    return tsm::runToolJob<tsm::CHostOptions, tsm::CHostJob>("reelpath-host", argc, argv);
}
