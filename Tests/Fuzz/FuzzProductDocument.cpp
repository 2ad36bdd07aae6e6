// A compiled definition document in the engine's place: the product's classes are made of it, and
// as far as an instance comes about it passes sound.

#include "Tests/Fuzz/CFuzzWrapper.h"
#include "Tests/Support/CDocumentBytes.h"

namespace tsm {

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    const CTestResource resource("fuzz.xml", std::vector<std::uint8_t>(data, data + size));
    CApplication application;
    const auto creators = productCreators();
    (void)hasFailed(
        application.start(creators.data(), static_cast<int>(creators.size()), nullptr, "fuzz.xml"));
    CFuzzWrapper wrapper;
    if (hasFailed(wrapper.init()))
        return;
    wrapper.afterInit();
    wrapper.run();
}

} // namespace tsm
