#include "Tests/Support/CInterfaceRig.h"
#include "Tests/Support/InterfaceMessages.h"

#include <cmath>
#include <optional>

namespace tsm::test {
namespace {

/// Messages written byte by byte, and what becomes of them when they are damaged.
class ADamagedMessage : public AnInterface {
protected:
    using CMessage = CWrittenMessage;

    void SetUp() override
    {
        AnInterface::SetUp();
        window = std::make_unique<CTestClient>(instance->getRoot());
        gain = window->listen("modReelpath.recgain", ofGain.emplace(*window->client));
        names = window->listen("io-params.group-names", ofNames.emplace(*window->client));
        programs = window->listen("plugin.param-registry", ofPrograms);
        ASSERT_OK(window->tick());
    }
    void TearDown() override
    {
        window.reset();
        AnInterface::TearDown();
    }

    CMessageWriter writer() const
    {
        return {{gain, names, programs}, written([&](COutputStream& out) {
                    EXPECT_OK(instance->getParamRegistry().acquirePreset(true, 1, -1, out));
                })};
    }
    /// Place and shape of a change, as the writer makes them.
    static CByteList changeTo(std::uint32_t listener, std::uint32_t count, std::uint32_t type,
                              std::uint32_t isSingleGroup)
    {
        CByteList list;
        return list.u32(listener).u32(0).append(
            CMessageWriter::changeHead(count, type, isSingleGroup).bytes);
    }
    /// Whether sound still passes as it should.
    bool passesSound()
    {
        const CChannel in(600, 0.25);
        CChannel left = in;
        CChannel right = in;
        const void* inputs[] = {in.data(), in.data()};
        void* outputs[] = {left.data(), right.data()};
        instance->startProcessing();
        instance->processBlock(inputs, outputs, 600);
        instance->stopProcessing();
        return std::all_of(left.begin(), left.end(), [](double x) { return std::isfinite(x); });
    }
    std::vector<CBytes> takeBlocks()
    {
        CInterfaceBlockList blocks;
        connector->takeBlocks(1, blocks);
        std::vector<CBytes> taken;
        while (const CPtr<CInterfaceBlock> block = blocks.takeFirst())
            taken.push_back(toBytes(block->bytes));
        return taken;
    }

    std::unique_ptr<CTestClient> window;
    std::optional<CRecordingParam> ofGain;
    std::optional<CRecordingParam> ofNames;
    CRecordingRegistry ofPrograms;
    std::uint32_t gain = 0;
    std::uint32_t names = 0;
    std::uint32_t programs = 0;
};

TEST_F(ADamagedMessage, ChangesNothingWhereverItIsCut)
{
    for (const CMessage& message : writer().all()) {
        SCOPED_TRACE(message.name);
        const CBytes before = state();
        const std::vector<std::string> steps = history();
        for (std::size_t size = 0; size < message.bytes.size(); ++size)
            ASSERT_NE(takeMessage(process(
                          CBytes(message.bytes.begin(),
                                 message.bytes.begin() + static_cast<std::ptrdiff_t>(size)))),
                      "")
                << size;
        EXPECT_EQ(state(), before);
        EXPECT_EQ(history(), steps);
        EXPECT_OK(process(message.bytes));
    }
    EXPECT_TRUE(passesSound());
}

TEST_F(ADamagedMessage, HarmsNothingWhateverItsBytes)
{
    std::uint64_t random = 1;
    const auto next = [&random] {
        random = random * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(random >> 33);
    };
    const std::vector<CMessage> good = writer().all();
    for (const CMessage& message : good) {
        // Names that are none teach nothing: only what stands behind them is damaged.
        const std::size_t head = 4 + message.name.size();
        for (int i = 0; i < 400 && message.bytes.size() > head; ++i) {
            CBytes bytes = message.bytes;
            for (std::uint32_t n = next() % 3; n < 3; ++n) {
                const std::size_t at = head + next() % (bytes.size() - head);
                constexpr std::uint8_t kEdges[] = {0, 1, 0x7F, 0x80, 0xFF};
                bytes[at] = next() % 2 ? kEdges[next() % 5] : static_cast<std::uint8_t>(next());
            }
            handleError(process(bytes));
            if (i % 50 == 0)
                handleError(window->tick());
        }
    }
    EXPECT_TRUE(passesSound());
    // A new window finds all well.
    window = std::make_unique<CTestClient>(instance->getRoot());
    programs = window->listen("plugin.param-registry", ofPrograms);
    ASSERT_OK(process(
        writtenMessage("activate-preset", writer().presetFields(CMessageWriter::kAll)).bytes));
    EXPECT_EQ(param("preset-name").text(0, 0).toUtf8(), "Drum Saturator");
    EXPECT_TRUE(passesSound());
}

TEST_F(ADamagedMessage, SaysWhatIsWrong)
{
    const CByteList many = changeTo(gain, 0x7FFFFFFF, 0, 0);
    const CByteList type = changeTo(gain, 1, 3, 0);
    CByteList far;
    far.u32(gain).u32(0).u32(0).u32(60000).u32(1).u32(0).u32(1).u32(0).u32(0).u32(0).f64(0);
    CByteList group;
    group.u32(gain).u32(0).u32(32).u32(0).u32(1).u32(0).u32(1).u32(0).u32(0).u32(0).f64(0);
    struct CRow {
        CMessage message;
        const char* error;
    };
    const CBytes before = state();
    for (const CRow& row :
         {CRow{writtenMessage("change-param", many),
               "Invalid elements specified (2147483647 from 0)."},
          CRow{writtenMessage("change-param", type), "Unknown data type 3 encountered"},
          CRow{writtenMessage("change-param", far), "Invalid element 60000 specified."},
          CRow{writtenMessage("change-param", group), "Invalid group 32 specified."},
          CRow{writtenMessage("reset-param",
                              CByteList().u32(gain).u32(0).u32(0xFFFFFFF0).u32(0).u32(0)),
               "Invalid element -16 specified."},
          CRow{writtenMessage("no-message", CByteList()), "Unknown event 'no-message'."}}) {
        SCOPED_TRACE(row.error);
        EXPECT_FAILS_WITH(process(row.message.bytes), row.error);
    }
    EXPECT_EQ(state(), before);
}

TEST_F(ADamagedMessage, BelievesNoCountThatItsBytesDoNotHold)
{
    // A table of texts and a preset that claim four billion entries.
    const CByteList texts = changeTo(names, 1, 1, 1).u32(1).u32(0xFFFFFFFF);
    CByteList preset;
    preset.u32(programs).u32(0xFFFFFFFF).text("gplu:x").u32(0xFFFFFFFF).text("k").u32(0x0FFFFFFF);
    const CByteList numbers = changeTo(gain, 65536, 0, 0);
    for (const CMessage& row :
         {writtenMessage("change-param", texts), writtenMessage("activate-preset", preset),
          writtenMessage("change-param", numbers)}) {
        SCOPED_TRACE(row.name);
        EXPECT_THAT(takeMessage(process(row.bytes)),
                    testing::AnyOf(testing::StartsWith("Premature end of memory resource"),
                                   testing::HasSubstr("4294967295")));
    }
}

TEST_F(ADamagedMessage, FromTheBaseHarmsNoClient)
{
    ofPrograms.takeNotes();
    param("modReelpath.recgain").reset(kAllParamGroups, -1);
    param("modReelpath.recgain").setValue(0, 0, 2.0);
    param("io-params.group-names").setText(0, 0, "Front");
    ASSERT_OK((*window)->requestUndoHistory());
    ASSERT_OK((*window)->requestPreset(programs, 1, true, 0, -1));
    ASSERT_OK((*window)->requestBank(programs, 2, true));
    ASSERT_OK((*window)->requestGroupCount());
    ASSERT_OK((*window)->requestInternalChannelCount());
    ASSERT_OK((*window)->requestIoChannelCounts());
    ASSERT_OK((*window)->requestSampleRate());
    ASSERT_OK((*window)->setCurrentProgram(programs, 1));
    const std::vector<CBytes> good = takeBlocks();
    ASSERT_GT(good.size(), 12U);
    for (const CBytes& bytes : good) {
        SCOPED_TRACE(std::string(bytes.begin() + 4, bytes.begin() + 4 + bytes[0]));
        // A bank is long: every byte of its beginning, then some.
        for (std::size_t size = 1; size < bytes.size(); size += size < 400 ? 1 : 97) {
            sendBytes(1, CBytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
            ASSERT_NE(takeMessage(window->tick()), "") << size;
        }
        sendBytes(1, bytes);
        EXPECT_OK(window->tick());
    }
    EXPECT_EQ(ofNames->text(0), param("io-params.group-names").text(0, 0).toUtf8());
}

} // namespace
} // namespace tsm::test
