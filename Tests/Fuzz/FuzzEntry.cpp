// The entry that libFuzzer, or the replay, calls.

#include "Tests/Fuzz/FuzzTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tsm::fuzzOne(data, size);
    return 0;
}
