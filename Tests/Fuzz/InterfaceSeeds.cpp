#include "Audio/CAudioParamRegistry.h"
#include "Tests/Fuzz/CFuzzClient.h"
#include "Tests/Fuzz/CSeedFolder.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/InterfaceMessages.h"

#include <map>

namespace tsm {
namespace {

// How the target reads its input, by the first byte.
constexpr int kToBase = 0;
constexpr int kToClient = 1;
constexpr int kWithSound = 2;
constexpr int kWithState = 4;

void append(CBytes& to, const CBytes& message)
{
    to.push_back(static_cast<std::uint8_t>(message.size()));
    to.push_back(static_cast<std::uint8_t>(message.size() >> 8));
    to.insert(to.end(), message.begin(), message.end());
}

CBytes single(const CBytes& message)
{
    CBytes bytes;
    append(bytes, message);
    return bytes;
}

/// Adds the first of each kind of answer that waits for the client.
void addAnswers(CSeedFolder& seeds, CFuzzClient& client, std::map<std::string, int>& counts)
{
    constexpr int kOfEach = 4;
    CInterfaceBlockList blocks;
    client.getConnector().takeBlocks(1, blocks);
    while (const CPtr<CInterfaceBlock> block = blocks.takeFirst()) {
        const CBytes bytes = toBytes(block->bytes);
        const std::string name(bytes.begin() + 4, bytes.begin() + 4 + bytes[0]);
        if (const int number = ++counts[name]; number <= kOfEach && bytes.size() < 16000)
            seeds.add("interface", name + "-" + std::to_string(number), single(bytes), kToClient);
    }
}

/// What two meters have sent: levels, one of them ahead of its time, and a record of another kind.
CBytes meterData()
{
    CByteList list;
    const auto level = [&list](std::uint64_t time) {
        list.u32(0).u32(40).u32(1).u32(0).u32(0).f64(time).u32(CMessageWriter::kAll);
        list.f64(0x3FE0000000000000).f64(0x3FE8000000000000);
    };
    list.text("viz-data").f64(0x3FF8000000000000).u32(3).text("plugin.modMain.modMeterOut");
    level(0x3FF0000000000000);
    list.u32(7).u32(4).u32(99);
    level(0x4000000000000000);
    list.u32(1).text("plugin.modMain.modMeterIODiff");
    level(0x3FF0000000000000);
    return list.u32(0).bytes;
}

} // namespace

void addInterfaceSeeds(CSeedFolder& seeds)
{
    CFuzzClient client;
    const CBytes preset = written([&](COutputStream& stream) {
        promise(
            !hasFailed(client.getWrapper().getParamRegistry().acquirePreset(true, 1, -1, stream)),
            "the product carries a preset");
    });
    const CMessageWriter writer({client.gain, client.names, client.programs}, preset);
    CBytes all;
    std::map<std::string, int> answers;
    for (const CWrittenMessage& message : writer.all()) {
        const std::string name = message.name + "-" + std::to_string(message.bytes.size());
        seeds.add("interface", name, single(message.bytes), kToBase + kWithState);
        append(all, message.bytes);
        promise(!hasFailed(client.sendToBase(message.bytes.data(), message.bytes.size())),
                "the base takes good messages");
        client.getWrapper().run();
        addAnswers(seeds, client, answers);
    }
    seeds.add("interface", "meters", single(meterData()), kToClient);
    seeds.add("interface", "all", all, kToBase + kWithSound + kWithState);
}

} // namespace tsm
