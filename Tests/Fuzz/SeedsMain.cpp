// fuzz_seeds FOLDER INPUTS: fills the folder with what the fuzz targets begin from.

#include "Tests/Fuzz/CFuzzWrapper.h"
#include "Tests/Fuzz/CSeedFolder.h"

#include <cstdio>
#include <exception>

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) {
        std::fprintf(stderr, "usage: fuzz_seeds FOLDER INPUTS\n");
        return 2;
    }
    try {
        (void)tsm::fuzzProduct();
        tsm::CSeedFolder seeds(arguments[1]);
        tsm::addDefinitionSeeds(seeds);
        tsm::addInterfaceSeeds(seeds);
        tsm::addPresetSeeds(seeds);
        tsm::addSoundSeeds(seeds);
        tsm::addStoredSeeds(seeds);
        tsm::addTextSeeds(seeds);
        tsm::addHexInputs(seeds, arguments[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "fuzz_seeds: %s\n", error.what());
        return 1;
    }
    return 0;
}
