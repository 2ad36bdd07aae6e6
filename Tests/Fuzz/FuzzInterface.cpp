// Messages of the parameter interface: from a client to the base, or from the base to a client, by
// the first byte; each is its size in two bytes, and its bytes.

#include "Core/CMemoryReader.h"
#include "Tests/Fuzz/CFuzzClient.h"

#include <algorithm>
#include <memory>

namespace tsm {
namespace {

/// The instance and client that inputs go to, made anew now and then, since names that messages
/// bring stay with it.
CFuzzClient& pair()
{
    constexpr int kInputsEach = 300;
    (void)fuzzProduct(); // before the client, so that it ends behind it
    static std::unique_ptr<CFuzzClient> client;
    static int used = kInputsEach;
    if (used++ >= kInputsEach) {
        used = 0;
        client.reset();
        client = std::make_unique<CFuzzClient>();
    }
    return *client;
}

void sendAll(CFuzzClient& client, bool isToClient, const std::uint8_t* data, std::size_t size)
{
    while (size >= 2) {
        const std::size_t wanted = data[0] + 256U * data[1];
        const std::size_t count = std::min(wanted, size - 2);
        if (isToClient) {
            client.sendToClient(data + 2, count);
            (void)hasFailed(client.tick());
        } else {
            (void)hasFailed(client.sendToBase(data + 2, count));
        }
        data += 2 + count;
        size -= 2 + count;
    }
    // What comes back to the client is the base's, and good.
    promise(!hasFailed(client.tick()), "a client can read what the base sends");
}

void checkState(CFuzzWrapper& wrapper)
{
    const auto state = [&] {
        return bytesOf([&](COutputStream& stream) { return wrapper.saveState(stream); });
    };
    const CByteBuffer saved = state();
    CMemoryReader reader(saved);
    promise(!hasFailed(wrapper.loadState(reader)), "a saved state loads");
    promise(state() == saved, "a saved state loads equal");
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    CFuzzClient& client = pair();
    const CFuzzChoice choice(data, size);
    sendAll(client, choice.bit(0), data, size);
    if (choice.bit(1))
        client.getWrapper().run();
    client.checkUnderstanding();
    if (choice.bit(2))
        checkState(client.getWrapper());
}

} // namespace tsm
