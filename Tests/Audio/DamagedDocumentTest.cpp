#include "Core/CResourceEntry.h"
#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/CDocumentBytes.h"

#include <cstring>
#include <string_view>

namespace tsm {
namespace {

// The sanitizers make a load ten times as slow: they look at a share of the places. No multiple of
// the sizes in a node, so that every field comes round.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kStep = 11;
#else
constexpr std::size_t kStep = 3;
#endif
constexpr int kShards = 4;

using CBytes = std::vector<std::uint8_t>;

/// The engine's own document as it is embedded.
CBytes sharedData()
{
    for (const CResourceEntry* entry = kResourceTable; entry->data; ++entry)
        if (std::string_view(entry->name) == "SharedData.xml") {
            std::uint32_t size = 0;
            std::memcpy(&size, entry->data, sizeof size);
            return CBytes(entry->data + 4, entry->data + 4 + size);
        }
    return {};
}

/// Loads a document with all of the product's classes; what came of it is made to run, as far as it
/// can. Returns the message of the load's failure; empty for one that went through.
std::string load(const CBytes& bytes)
{
    const CTestResource resource("damaged.xml", bytes);
    CApplication application;
    const auto creators = productCreators();
    std::string message = takeMessage(application.start(
        creators.data(), static_cast<int>(creators.size()), kResourceTable, "damaged.xml"));
    CTestWrapper wrapper;
    if (CError* error = wrapper.init()) {
        handleError(error);
        return message;
    }
    wrapper.afterInit();
    wrapper.setChannelFormat({2, true, false}, {});
    wrapper.setOutputFormat({2, true, false});
    wrapper.startProcessing();
    double samples[2][64] = {{0.5}, {-0.5}};
    const void* const inputs[] = {samples[0], samples[1]};
    void* const outputs[] = {samples[0], samples[1]};
    wrapper.processBlock(inputs, outputs, 64);
    return message;
}

class TheEnginesDocument : public testing::TestWithParam<int> {
protected:
    /// Calls `action` with this shard's share of the places in the document.
    template <class Action>
    void atPlaces(const Action& action)
    {
        for (std::size_t at = static_cast<std::size_t>(GetParam()) * kStep; at < bytes.size();
             at += kStep * kShards)
            action(at);
    }
    const CBytes bytes = sharedData();
};

TEST_P(TheEnginesDocument, FailsWhereverItIsCut)
{
    ASSERT_EQ(load(bytes), "");
    atPlaces([this](std::size_t size) {
        const CBytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(load(cut), "") << "cut to " << size << " bytes";
    });
}

TEST_P(TheEnginesDocument, HarmsNothingWithADamagedByte)
{
    atPlaces([this](std::size_t at) {
        CBytes damaged = bytes;
        // Every bit is turned over once in eight places.
        damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ (1u << at % 8));
        (void)load(damaged); // an error or a document; the sanitizers watch
    });
}

INSTANTIATE_TEST_SUITE_P(Shard, TheEnginesDocument, testing::Range(0, kShards));

} // namespace
} // namespace tsm
